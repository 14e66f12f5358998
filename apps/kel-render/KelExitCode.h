// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELEXITCODE_H
#define KELEXITCODE_H

/// What kel-render tells the shell. The numbers are documented in --help and in the manual page: they never change.
enum class KelExitCode {
    Success = 0,
    InternalError = 1,     ///< out of memory and the like
    UsageError = 2,        ///< unknown option, bad value, options that contradict each other
    InputUnreadable = 3,   ///< a named file or folder is missing or may not be read
    InputMalformed = 4,    ///< a file is damaged or is not what its name says
    UnsupportedFormat = 5, ///< a kind of file that cannot be read or written
    NothingToDraw = 6,     ///< everything was read, and there was no track in it
    OutputFailed = 7       ///< a result could not be written
};

#endif
