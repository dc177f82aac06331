// SPDX-License-Identifier: Apache-2.0
// What the leak checker finds inside libraries.

/**
 * Qt's reader of JSON loses the array or object of a name that comes again in the same object. Only
 * what Qt has allocated and nobody knows any more is left out: three frames of an allocation are
 * kept, so that what this tree's own code has allocated does not count as Qt's for being called by
 * Qt.
 */
extern "C" const char *__lsan_default_suppressions();
extern "C" const char *__lsan_default_suppressions() { return "leak:libQt5Core.so\n"; }

extern "C" const char *__asan_default_options();
extern "C" const char *__asan_default_options() { return "malloc_context_size=3"; }
