# SPDX-License-Identifier: Apache-2.0
"""What makes faults in the program and tries whether the tests see them."""
