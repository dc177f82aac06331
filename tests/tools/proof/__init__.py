# SPDX-License-Identifier: Apache-2.0
"""What the tools that judge the tests have in common."""
import pathlib

TOP = pathlib.Path(__file__).resolve().parents[3]

# The program, as against what only a desktop has.
PRODUCT = ("app", "shell", "enigma2", "api", "objects", "platform")
