#!/usr/bin/sed -Ef
# SPDX-FileCopyrightText: The libKelGeoLocation authors
# SPDX-License-Identifier: MIT
#
# Takes from the eyes of Doxygen what the compiler makes by itself: copies, moves, destructors. A line stays a line,
# so that Doxygen's messages name the right one. The first line of a header makes its enumerations and free functions known.

/^\/\/ SPDX-FileCopyrightText/s,.*,/** \\file */,

s/^[[:space:]]+(explicit )?Kel\w+\((const )?Kel\w+(<\w+>)? &&?( ?\w+)?\)( noexcept)? = (default|delete);$//
s/^[[:space:]]+Kel\w+(<\w+>)? &operator=\((const )?Kel\w+(<\w+>)? &&?( ?\w+)?\)( noexcept)? = (default|delete);$//
s/^[[:space:]]+Kel\w+\(\) = delete;$//
s/^[[:space:]]+(virtual )?~\w+\(\)( noexcept)?( override)?( = default)?;( .*)?$//
s/^[[:space:]]+using .*::(supportsFile|createConfiguredTrackList|parent);$//
