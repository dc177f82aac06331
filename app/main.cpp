// SPDX-License-Identifier: Apache-2.0
#include "app/startup.h"

int main(int argc, char *argv[]) { return runVesprel(argc, argv); }
