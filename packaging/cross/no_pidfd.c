/* SPDX-License-Identifier: Apache-2.0
 *
 * Preloaded into emulated programs. The emulator (qemu 7.2) knows waitid() of a pidfd but no clone()
 * that makes one. Qt's process class asks for the first only, by syscall(), takes nonsense for the
 * child that it then seems to have, and its kill() may go to every process there is. Refused, it
 * forks as on kernels that know no pidfd.
 */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <errno.h>
#include <stdarg.h>
#include <sys/syscall.h>

enum { pidfd = 3 /* P_PIDFD */, arguments = 6 };

long syscall(long number, ...)
{
    static long (*next)(long, ...);
    long given[arguments];
    va_list list;
    va_start(list, number);
    for (int index = 0; index < arguments; ++index)
        given[index] = va_arg(list, long);
    va_end(list);
    if (number == SYS_waitid && given[0] == pidfd) {
        errno = EINVAL;
        return -1;
    }
    if (!next)
        *(void **)&next = dlsym(RTLD_NEXT, "syscall");
    return next(number, given[0], given[1], given[2], given[3], given[4], given[5]);
}
