# SPDX-License-Identifier: Apache-2.0
"""What bench/run measures with whole processes."""
