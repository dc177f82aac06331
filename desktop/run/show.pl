#!/usr/bin/perl
# SPDX-License-Identifier: Apache-2.0
# Shows the output of a program on the terminal: show.pl LABEL [--verbose]. Each line gets a label,
# calls that a page makes again and again are left out unless all is to be shown, and what a page
# writes cannot control the terminal.
use strict;
use warnings;

# Whoever presses Ctrl-C still wants to read how it ended.
$SIG{INT} = 'IGNORE';
$| = 1;
my ($label, $verbose) = @ARGV;
my $shown = 3;     # calls of one name in a row
my $quiet = 5;     # seconds after which they count as a new row
my (%count, %last);

# Whether this is one call too many of a question that a page asks while something plays.
sub is_polling {
    my ($line) = @_;
    my ($name) = $line =~ /^((?:get|is)\w+|setProgress) ?\b/i or return 0;
    my $now = time;
    $count{$name} = 0 if $now - ($last{$name} // 0) > $quiet;
    $last{$name} = $now;
    my $number = ++$count{$name};
    print_line($label, "$name goes on; --verbose shows every call") if $number == $shown + 1 && $line =~ /\(/;
    return $number > $shown;
}

sub print_line {
    my ($who, $line) = @_;
    $line =~ s/([\x00-\x08\x0b-\x1f\x7f]|\xc2[\x80-\x9f])/join '', map { sprintf '\\x%02x', ord } split m{}, $1/ge;
    printf "%-8s | %s\n", $who, $line;
}

while (my $line = <STDIN>) {
    chomp $line;
    # What a page says stands out from what the program does.
    my $who = $line =~ s/^vesprel\.page: // ? 'page' : $label;
    print_line($who, $line) if $verbose || !is_polling($line);
}
