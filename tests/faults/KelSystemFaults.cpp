// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelSystemFaults.h"

#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstddef>
#include <cstdlib>
#include <utility>

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

struct Plan
{
    KelSystemFaults::Kind kind = KelSystemFaults::Nothing;
    KelSystemFaults::Calls calls = KelSystemFaults::Writes;
    int at = 0;
    int errorNumber = 0;
    KelSystemFaults::Interference interference;
    int count = 0;
};

// Of the thread that made the object; others call the system undisturbed.
thread_local Plan *plan = nullptr;

template<class Function>
Function *original(const char *name)
{
    return reinterpret_cast<Function *>(::dlsym(RTLD_NEXT, name));
}

enum class Verdict { Proceed,
                     Fail,
                     TakeHalf,
                     TakeHalfAndDie };

[[noreturn]] void die()
{
    std::raise(SIGKILL);
    std::abort();
}

/// What is to become of the call, which is counted.
Verdict judge(KelSystemFaults::Calls calls, const char *path, bool isWrite)
{
    if (!plan || plan->calls != calls)
        return Verdict::Proceed;
    Plan &now = *plan;
    ++now.count;
    const bool isFurther = now.kind == KelSystemFaults::FullDisk && now.count > now.at;
    if (now.count != now.at && !isFurther)
        return Verdict::Proceed;
    switch (now.kind) {
    case KelSystemFaults::Nothing:
        return Verdict::Proceed;
    case KelSystemFaults::Error:
        errno = now.errorNumber;
        return Verdict::Fail;
    case KelSystemFaults::FullDisk:
        errno = ENOSPC;
        // A full disk renames and removes as ever.
        return !isWrite ? Verdict::Proceed : isFurther ? Verdict::Fail
                                                       : Verdict::TakeHalf;
    case KelSystemFaults::ShortWrite:
        return isWrite ? Verdict::TakeHalf : Verdict::Proceed;
    case KelSystemFaults::Kill:
        die();
    case KelSystemFaults::TornKill:
        return isWrite ? Verdict::TakeHalfAndDie : Verdict::Proceed;
    case KelSystemFaults::Interfere: {
        // What the interference does itself is not to be judged.
        Plan *const own = std::exchange(plan, nullptr);
        own->interference(path);
        plan = own;
        return Verdict::Proceed;
    }
    }
    return Verdict::Proceed;
}

bool mayWrite(int flags)
{
    return (flags & O_ACCMODE) != O_RDONLY;
}

/// For calls that are 0 or -1.
template<class Call>
int unlessFaulty(const char *path, Call call)
{
    return judge(KelSystemFaults::Writes, path, false) == Verdict::Fail ? -1 : call();
}

} // namespace

KelSystemFaults::KelSystemFaults(Kind kind, Calls calls, int at, int errorNumber, Interference interference)
{
    plan = new Plan{kind, calls, at, errorNumber, std::move(interference), 0};
}

KelSystemFaults::~KelSystemFaults()
{
    delete std::exchange(plan, nullptr);
}

int KelSystemFaults::count() const
{
    return plan->count;
}

bool KelSystemFaults::hasStruck() const
{
    return plan->count >= plan->at;
}

// The C library declares some of these with attributes of its own, which need no repetition.
#define KEL_INTERCEPT extern "C" __attribute__((visibility("default")))

KEL_INTERCEPT ssize_t write(int descriptor, const void *bytes, size_t count)
{
    static const auto real = original<ssize_t(int, const void *, size_t)>("write");
    switch (judge(KelSystemFaults::Writes, nullptr, true)) {
    case Verdict::Proceed:
        break;
    case Verdict::Fail:
        return -1;
    case Verdict::TakeHalf:
        return real(descriptor, bytes, count > 1 ? count / 2 : count);
    case Verdict::TakeHalfAndDie:
        real(descriptor, bytes, count / 2);
        die();
    }
    return real(descriptor, bytes, count);
}

KEL_INTERCEPT ssize_t read(int descriptor, void *bytes, size_t count)
{
    static const auto real = original<ssize_t(int, void *, size_t)>("read");
    return judge(KelSystemFaults::Reads, nullptr, false) == Verdict::Fail ? -1 : real(descriptor, bytes, count);
}

KEL_INTERCEPT int open64(const char *path, int flags, ...)
{
    static const auto real = original<int(const char *, int, ...)>("open64");
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = (flags & O_CREAT) ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    if (!mayWrite(flags))
        return real(path, flags, mode);
    return unlessFaulty(path, [=] { return real(path, flags, mode); });
}

KEL_INTERCEPT int open(const char *path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = (flags & O_CREAT) ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    return open64(path, flags, mode);
}

KEL_INTERCEPT int mkostemp(char *path, int flags)
{
    static const auto real = original<int(char *, int)>("mkostemp");
    return unlessFaulty(path, [=] { return real(path, flags); });
}

KEL_INTERCEPT int fsync(int descriptor)
{
    static const auto real = original<int(int)>("fsync");
    return unlessFaulty(nullptr, [=] { return real(descriptor); });
}

KEL_INTERCEPT int fdatasync(int descriptor)
{
    static const auto real = original<int(int)>("fdatasync");
    return unlessFaulty(nullptr, [=] { return real(descriptor); });
}

KEL_INTERCEPT int fchmod(int descriptor, mode_t mode)
{
    static const auto real = original<int(int, mode_t)>("fchmod");
    return unlessFaulty(nullptr, [=] { return real(descriptor, mode); });
}

KEL_INTERCEPT int rename(const char *from, const char *to)
{
    static const auto real = original<int(const char *, const char *)>("rename");
    return unlessFaulty(to, [=] { return real(from, to); });
}

KEL_INTERCEPT int renameat2(int fromFolder, const char *from, int toFolder, const char *to, unsigned flags)
{
    static const auto real = original<int(int, const char *, int, const char *, unsigned)>("renameat2");
    return unlessFaulty(to, [=] { return real(fromFolder, from, toFolder, to, flags); });
}

KEL_INTERCEPT int link(const char *from, const char *to)
{
    static const auto real = original<int(const char *, const char *)>("link");
    return unlessFaulty(to, [=] { return real(from, to); });
}

KEL_INTERCEPT int linkat(int fromFolder, const char *from, int toFolder, const char *to, int flags)
{
    static const auto real = original<int(int, const char *, int, const char *, int)>("linkat");
    return unlessFaulty(to, [=] { return real(fromFolder, from, toFolder, to, flags); });
}

KEL_INTERCEPT int unlink(const char *path)
{
    static const auto real = original<int(const char *)>("unlink");
    return unlessFaulty(path, [=] { return real(path); });
}

KEL_INTERCEPT int mkdir(const char *path, mode_t mode)
{
    static const auto real = original<int(const char *, mode_t)>("mkdir");
    return unlessFaulty(path, [=] { return real(path, mode); });
}

KEL_INTERCEPT int ftruncate64(int descriptor, off64_t length)
{
    static const auto real = original<int(int, off64_t)>("ftruncate64");
    return unlessFaulty(nullptr, [=] { return real(descriptor, length); });
}
