#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
# A start for /home/default/action.sh, which runs when a portal asks for a system action of the box.
# It learns neither the action nor who asked, has 30 seconds while the page waits, and only the
# program's few rights: what needs more is done by a service of the box that it asks. This one
# leaves a mark in a folder that both know, for a systemd path unit (PathChanged=) or a script that
# looks there.
#
# Install it owned by root, executable (0755), without secrets: pages can read it.
date +%s >/run/vesprel/action.new && mv -f /run/vesprel/action.new /run/vesprel/action
