// SPDX-License-Identifier: Apache-2.0
#include "app/questions.h"
#include "app/startup.h"

int main(int argc, char *argv[]) { return answerQuestion(argc, argv) ? 0 : runVesprel(argc, argv); }
