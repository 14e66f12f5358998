// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELGPXTRACKDISPLAYOPTIONS_H
#define KELGPXTRACKDISPLAYOPTIONS_H

#include <KelEnumWrapper.h>
#include <KelGeoLocationGlobal.h>

#include <QString>

class QDomElement;

/// The parts of a track's form that can be painted, as single bits.
enum KelGPXTrackDisplayOptionsEnum : int {
    DisplayNone = 0,   ///< nothing
    DisplayStroke = 1, ///< "stroke": the outline or line
    DisplayFill = 2,   ///< "fill": the area
    DisplayExtra = 4   ///< no key: can be offered and held, but is lost when written
};

/// Which parts of a track's form are painted: any combination of KelGPXTrackDisplayOptionsEnum.
///
/// The text form is a comma list of keys, see KelEnumWrapper. The bit DisplayExtra has no key: all three bits
/// are written as "stroke, fill, " and read back as stroke and fill.
class KELGEOLOCATION_EXPORT KelGPXTrackDisplayOptions : public KelEnumWrapper<KelGPXTrackDisplayOptionsEnum>
{
public:
    /// Nothing is painted (0).
    KelGPXTrackDisplayOptions();
    /// Implicit on purpose: an enumerator is a set of one option.
    KelGPXTrackDisplayOptions(KelGPXTrackDisplayOptionsEnum option);
    /// From a combination of bits, as operator| and operator& deliver it.
    explicit KelGPXTrackDisplayOptions(int bits);
    /// From a comma list of keys; case and blanks around a key do not matter, unknown words are ignored.
    explicit KelGPXTrackDisplayOptions(const QString &keys);

    KelGPXTrackDisplayOptions(const KelGPXTrackDisplayOptions &) = default;
    KelGPXTrackDisplayOptions(KelGPXTrackDisplayOptions &&) noexcept = default;
    KelGPXTrackDisplayOptions &operator=(const KelGPXTrackDisplayOptions &) = default;
    KelGPXTrackDisplayOptions &operator=(KelGPXTrackDisplayOptions &&) noexcept = default;
    ~KelGPXTrackDisplayOptions() override;

    /// Inserts the keys of the enumeration.
    void fillTable(KelEnumToStringTable<KelGPXTrackDisplayOptionsEnum> *table) const override;

    /// The value becomes what the child element "displayOptions" of `parent` says. Without such a child it becomes
    /// stroke; an empty child, or one that names no known key, makes it 0.
    void fromXml(const QDomElement &parent);
    /// Appends the child element "displayOptions" with the keys to `parent`.
    void write(QDomElement &parent) const;
};

#endif
