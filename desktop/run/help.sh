# SPDX-License-Identifier: Apache-2.0
# The help texts. Sourced.
# shellcheck shell=bash disable=SC2154 # the name comes from say.sh

usage() {
    cat <<EOT
Usage: $me [OPTION...] [PORTAL]

Runs the whole box on this PC: the desktop receiver and Vesprel on the portal, which is an address or
a file, or on the demo portal. The receiver's console is on this terminal: "help" lists its commands.
Ctrl-C, "quit" or closing the window ends everything. run.sh first installs what is missing (Debian
packages, through sudo unless you are root) and builds.

The portal
  --new FOLDER        makes a folder to start a portal from, and ends
  --watch             loads the portal again when a file beside it or below changes
  --trust FILE        a PEM file with certificates that count as authorities for servers

The box
  --profile NAME      which model it is: desk, vb20, vb40 or a file of yours
  --window WxH        a window of this size instead of the whole screen
  --root FOLDER       stands for the box's file system, and lets a second box run beside the first;
                      by default VESPREL_ROOT or ~/.local/share/vesprel/box
  --player NAME       mpv plays and records for real, simulated shows a test picture and only
                      pretends; by default mpv where it is installed
  --no-sound          nothing is heard

Without a display
  --web [PORT]        shows the screen in a web browser of this machine, at http://127.0.0.1:6080 or
                      the next free port; also where there is a display. With --no-keys the browser
                      only looks. This is what happens on a terminal without a display
  --screenshot FILE   plays for a few seconds on a box of its first day, saves its screen as PNG and
                      ends with 0, or with 1 and the reasons if the portal did not load or nothing is
                      on the screen. Without display and terminal the demo does this (vesprel.png)
  --after SECONDS     so long after the portal has loaded is the picture taken (3)
  --size WxH          of the screen for both, by default the profile's or 1280x720

Testing
  --script FILE       presses keys, raises events and looks into the page as FILE says, without a
                      display as well; ends with 0 if all was as expected, 1 if not, 2 if FILE
                      can't be read. See docs/scripts.md
  --junit FILE        writes a JUnit report of the script
  --record FILE       writes what program and receiver tell each other, as JSON lines
  --replay FILE       answers and raises events as recorded, instead of playing and recording
  --driver [PORT]     serves WebDriver clients at http://127.0.0.1:PORT (4444) and starts a box for
                      each of their sessions; needs no display, see docs/testing-portals.md
  --inspector [PORT]  offers the pages to a WebKit browser at http://127.0.0.1:PORT (9222) for
                      inspection; otherwise this is off. It asks for no password: while it is on,
                      every program of this machine can use it, and so can a web site that is
                      open in a browser here
  --verbose           every call of a page is shown; without it those that go on and on are not
  --version           prints the version and the commit it was built from
  --help              this text

EOT
    remote
    cat <<EOT

Where bwrap works, all of this can write into the box's root only, whatever a page does.

Environment:
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
