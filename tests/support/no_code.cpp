// SPDX-License-Identifier: Apache-2.0
/*
 * A library of headers alone needs one source.
 */
