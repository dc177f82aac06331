# SPDX-License-Identifier: Apache-2.0
# The help texts. Sourced.
# shellcheck shell=bash disable=SC2154 # the names come from say.sh

usage() {
    cat <<EOT
Usage: $me [OPTION...] [URL]

Starts the desktop receiver and Vesprel on the portal at URL; without URL on the demo portal. A file
name works as URL too. The receiver's console is on this terminal: "help" lists its commands. Ctrl-C,
"quit" or closing the window ends everything. run.sh first installs what is missing (Debian packages,
through sudo unless you are root) and builds.

  --screenshot FILE   needs no display: runs everything under Xvfb, plays something, saves a
                      picture of the screen to FILE (PNG) and ends with 0, or with 1 and the reason
                      if the portal did not load or nothing is on the screen
  --player NAME       mpv plays and records for real, simulated shows a test picture and only
                      pretends; by default mpv where it is installed
  --script FILE       presses keys, raises events and looks into the page as FILE says, without a
                      display as well; ends with 0 if all was as expected, 1 if not, 2 if FILE
                      can't be read. See docs/scripts.md
  --junit FILE        writes a JUnit report of the script
  --record FILE       writes what program and receiver tell each other, as JSON lines
  --replay FILE       answers and raises events as recorded, instead of playing and recording
  --inspector [PORT]  offers the pages to a WebKit browser at http://127.0.0.1:PORT (9222) for
                      inspection; otherwise this is off. It asks for no password: while it is on,
                      every program of this machine can use it, and so can a web site that is
                      open in a browser here
  --driver [PORT]     serves WebDriver clients at http://127.0.0.1:PORT (4444) and starts a box for
                      each of their sessions; needs no display, see docs/testing-portals.md
  --help              this text

EOT
    remote
    cat <<EOT

Where bwrap works, all of this can write into VESPREL_ROOT only, whatever a page does.

Environment:
  VESPREL_ROOT       folder that stands for the box's file system (socket, settings, pages, media);
                     default ~/.local/share/vesprel/box. Recordings are in media/recordings.
  Q_CACHE_PATH       folder of the disk cache; without it there is none
  Q_VESPREL_LOG=true writes the log to /tmp/vesprel.log instead of this terminal
  and every variable that the program itself reads, see docs/box.md.
EOT
}

remote() {
    cat <<EOT
The remote on the keyboard:
  arrows, Enter      move, OK             F1 F2 F3 F4         red, green, yellow, blue
  Esc, Backspace     back                 PageUp, PageDown    next and previous channel
  F5                 Backspace, for a     F11                 favourites
                     page that wants it   F12                 the box's applications
  0 to 9             the digits           Home, U             leave the portal
EOT
}
