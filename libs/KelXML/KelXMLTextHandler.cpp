// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelXMLTextHandler.h"

KelXMLTextHandler::~KelXMLTextHandler() = default;
