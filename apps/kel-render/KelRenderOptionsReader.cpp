// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelRenderOptionsReader.h"

#include "KelDiagnostics.h"
#include "KelOutputFile.h"
#include "KelPlainText.h"

#include <KelGPXMarkerShape.h>
#include <KelGPXTrackDisplayOptions.h>
#include <KelGPXTrackShape.h>

#include <QCoreApplication>
#include <QFileInfo>

#include <algorithm>
#include <cmath>
#include <map>
#include <type_traits>

namespace
{

constexpr int SMALLEST_SIDE = 16;
constexpr qint64 MOST_PIXELS = 100'000'000; // about 400 MB for the map, as much again for cropping

struct OptionText
{
    const char *names; // comma separated
    const char *description;
    const char *value; // nullptr for a switch
};

// One place for all options; --help shows them in this order.
constexpr OptionText OPTIONS[] = {
    {"o,output", "Write the picture to <file>; \"-\" is standard output.", "file"},
    {"format", "Kind of picture: png, jpg, webp, pdf or svg. Without it the file's suffix decides; png for \"-\".",
     "kind"},
    {"quality", "Quality of jpg and webp, 1 to 100.", "percent"},
    {"s,size", "Width and height of the picture in pixels (default 1600x1000).", "WxH"},
    {"scale-factor", "Multiply line widths, markers and texts, for displays and prints of high density (default 1).",
     "factor"},
    {"padding", "Free border around the tracks in percent of the picture (default 8).", "percent"},
    {"bounds", "Show this area, in degrees. A west greater than the east goes across the date line.", "S,W,N,E"},
    {"map", "Your own map picture (Mercator; PNG, JPEG or WebP); needs --map-bounds.", "image"},
    {"map-bounds", "The area that the picture of --map shows, edge to edge.", "S,W,N,E"},
    {"no-map", "No map: tracks on a transparent (jpg: white) ground.", nullptr},
    {"dark", "The built-in map in dark colours.", nullptr},
    {"no-scale", "No scale bar.", nullptr},
    {"no-attribution", "No credit for the map.", nullptr},
    {"attribution", "Credit for your own map picture.", "text"},
    {"crop", "Fade the map away from the tracks: 0 removes it, 255 leaves it, or a percentage such as 30%.", "opacity"},
    {"line-color", "Colour of lines and outlines: a name, #rrggbb or #aarrggbb.", "colour"},
    {"line-width", "Width of lines in pixels; point markers are twice as wide.", "pixels"},
    {"fill-color", "Colour of areas and markers.", "colour"},
    {"halo-width", "Light border around tracks; also what --crop keeps clear.", "pixels"},
    {"pen-style", "solid, dash, dot, dash-dot, dash-dot-dot or none.", "style"},
    {"display-options", "What to paint: stroke, fill or stroke,fill.", "list"},
    {"marker",
     "Marker of points: disk, circle, x, block, rect, rhombus, star6, star9, star12; arrow ends lines with one.",
     "marker"},
    {"shape", "Draw tracks as point, linestring, polygon, hop or auto.", "shape"},
    {"smoothing", "Percentage that each point keeps of its place; 100 smooths nothing.", "percent"},
    {"smoothing-steps", "Number of pieces that smoothing straightens.", "count"},
    {"beeline",
     "Draw the great circle from <A> to <B> (two arguments; may be repeated): \"N53.14 E8.21\", \"53.14,8.21\", "
     "\"53,8,24 N; 8,12,36 E\", or a known place such as Sydney.",
     "A> <B"},
    {"name", "Name of the beeline before it.", "text"},
    {"selection", "Read tracks, looks and cropping from a file of --save-selection.", "file"},
    {"save-selection", "Store tracks, looks and cropping in <file> and the tracks in a folder beside it.", "file"},
    {"export", "Write the tracks as GPX, one file for each; numbered where there are several. No result replaces an input.", "file.gpx"},
    {"info", "Print name, shape, segments, points, length, bounds and times of each track.", nullptr},
    {"report", "Print all that --info tells, and all messages, for programs; the one kind is json.", "json"},
    {"stats", "Print times, counts and memory for programs; the one kind is json.", "json"},
    {"k,keep-going", "Draw what can be read even if some inputs cannot.", nullptr},
    {"q,quiet", "Say nothing but warnings and errors.", nullptr},
    {"verbose", "Show the libraries' log lines too.", nullptr},
    {"h,help", "Show this text.", nullptr},
    {"v,version", "Show the version.", nullptr},
};

constexpr char INTRODUCTION[] = "Usage: kel-render [options] <file or folder>... -o <picture>\n"
                                "Draws GPX, KML and KMZ tracks on a map.\n"
                                "\n"
                                "  kel-render walk.gpx tour.kml -o map.png --size 1600x1000\n"
                                "  kel-render --beeline Helsinki Honolulu --name \"Long way\" -o flight.svg\n"
                                "  kel-render tracks/ --info\n"
                                "\n"
                                "Options:\n";

constexpr char CONCLUSION[] = "\n"
                              "Exit codes:\n"
                              "  0  done\n"
                              "  1  internal error, such as too little memory\n"
                              "  2  wrong use: unknown option or bad value\n"
                              "  3  an input is missing or cannot be read\n"
                              "  4  an input is malformed (told as file:line:column: message)\n"
                              "  5  a kind of file that cannot be read or written\n"
                              "  6  nothing to draw\n"
                              "  7  a result could not be written; what was there before is unchanged\n"
                              "\n"
                              "The manual page kel-render(1) says more.\n";

bool fail(KelDiagnostics &diagnostics, const QString &text)
{
    diagnostics.error(KelExitCode::UsageError, text);
    return false;
}

/// A value as a message shows it: nothing would leave a gap, and what was pasted by mistake may be long.
QString shown(const QString &value)
{
    return value.isEmpty() ? QStringLiteral("\"\"") : KelPlainText::shortened(value);
}

/// What was asked for instead of a run.
KelRenderOptionsReader::Outcome print(const QString &text, KelDiagnostics &diagnostics)
{
    QString error;
    if (KelOutputFile::writeToStandardOutput(text.toUtf8(), error))
        return KelRenderOptionsReader::Outcome::Done;
    diagnostics.error(KelExitCode::OutputFailed, QStringLiteral("standard output: %1").arg(error));
    return KelRenderOptionsReader::Outcome::Failed;
}

/// A number within a range, or nothing.
std::optional<double> number(const QString &text, double least, double most)
{
    bool ok = false;
    const double value = text.trimmed().toDouble(&ok);
    if (!ok || !(value >= least && value <= most))
        return std::nullopt;
    return value;
}

std::optional<QSize> parseSize(const QString &text)
{
    const QStringList parts = text.toLower().split(QLatin1Char('x'));
    if (parts.size() != 2)
        return std::nullopt;
    bool widthOk = false;
    bool heightOk = false;
    const QSize size(parts.at(0).trimmed().toInt(&widthOk), parts.at(1).trimmed().toInt(&heightOk));
    if (!widthOk || !heightOk)
        return std::nullopt;
    return size;
}

/// Every word of a comma list must be a key of the table that decodes it.
template<class Wrapper>
bool allKeysKnown(const QString &list)
{
    const QStringList words = list.split(QLatin1Char(','));
    for (const QString &word : words) {
        if (!Wrapper(word).isValid())
            return false;
    }
    return true;
}

/// Another file would be read or written than the one that was named.
bool failUndecodable(QLatin1String option, const QString &name, KelDiagnostics &diagnostics)
{
    const bool isInput = option == QLatin1String("selection") || option == QLatin1String("map");
    diagnostics.error(isInput ? KelExitCode::InputUnreadable : KelExitCode::UsageError, name,
                      QStringLiteral("the name in --%1 is no UTF-8; %2 another one")
                          .arg(option, isInput ? QStringLiteral("give the file") : QStringLiteral("choose")));
    return false;
}

} // namespace

KelRenderOptionsReader::KelRenderOptionsReader(const QStringList &undecodable)
    : m_undecodable(undecodable)
{
    m_parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsCompactedShortOptions);
    for (const OptionText &option : OPTIONS) {
        const QStringList names = QString::fromLatin1(option.names).split(QLatin1Char(','));
        m_parser.addOption(QCommandLineOption(names, QString::fromLatin1(option.description),
                                              QString::fromLatin1(option.value ? option.value : "")));
    }
}

KelRenderOptionsReader::Outcome KelRenderOptionsReader::read(const QStringList &arguments, KelRenderOptions &options,
                                                             KelDiagnostics &diagnostics)
{
    QStringList rest = arguments;
    const QString beelineTrouble = takeBeelines(rest, options);
    const bool parsed = m_parser.parse(rest);
    // First of all: who asks for a report gets it for a wrong use, too.
    const bool reportOk = readKind("report", options.report, diagnostics);
    const bool statsOk = readKind("stats", options.stats, diagnostics);
    if (!reportOk || !statsOk)
        return Outcome::Failed;
    if (!beelineTrouble.isEmpty()) {
        fail(diagnostics, beelineTrouble);
        return Outcome::Failed;
    }
    if (!parsed) {
        QString text = m_parser.errorText();
        if (text.endsWith(QLatin1Char('.')))
            text.chop(1);
        fail(diagnostics, shown(text) + QStringLiteral("; kel-render --help lists all options"));
        return Outcome::Failed;
    }

    if (m_parser.isSet(QStringLiteral("help")))
        return print(helpText(), diagnostics);
    if (m_parser.isSet(QStringLiteral("version")))
        return print(QStringLiteral("kel-render %1\n").arg(QCoreApplication::applicationVersion()), diagnostics);

    options.inputs = m_parser.positionalArguments();
    options.selectionFile = m_parser.value(QStringLiteral("selection"));
    options.saveSelectionFile = m_parser.value(QStringLiteral("save-selection"));
    options.info = m_parser.isSet(QStringLiteral("info"));
    options.keepGoing = m_parser.isSet(QStringLiteral("keep-going"));
    options.quiet = m_parser.isSet(QStringLiteral("quiet"));
    options.verbose = m_parser.isSet(QStringLiteral("verbose"));
    options.scale = !m_parser.isSet(QStringLiteral("no-scale"));
    options.attribution = !m_parser.isSet(QStringLiteral("no-attribution"));
    options.attributionText = m_parser.value(QStringLiteral("attribution"));
    if (!KelPlainText::isForXml(options.attributionText)) {
        fail(diagnostics, QStringLiteral("--attribution holds a control character or half a character; leave it out"));
        return Outcome::Failed;
    }

    const bool ok = checkFileNames(diagnostics) && readOutput(options, diagnostics) && readNumbers(options, diagnostics)
        && readMap(options, diagnostics) && readStyle(options.style, diagnostics) && checkWhole(options, diagnostics);
    return ok ? Outcome::Run : Outcome::Failed;
}

QString KelRenderOptionsReader::takeBeelines(QStringList &arguments, KelRenderOptions &options)
{
    // QCommandLineParser knows options with one value only, and nothing of which --name belongs to which --beeline.
    QString trouble;
    const auto complain = [&trouble](const char *text) {
        if (trouble.isEmpty())
            trouble = QString::fromLatin1(text);
    };
    QStringList rest;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const QString &argument = arguments.at(i);
        // No place begins like a long option; "-33.9,151.2" is one.
        const auto isValue = [&arguments](qsizetype at) {
            return at < arguments.size() && !arguments.at(at).startsWith(QLatin1String("--"));
        };
        if (argument == QLatin1String("--")) {
            rest.append(arguments.mid(i));
            break;
        }
        if (argument == QLatin1String("--beeline") || argument.startsWith(QLatin1String("--beeline="))) {
            if (isValue(i + 1) && isValue(i + 2) && !argument.contains(QLatin1Char('='))) {
                options.beelines.append({arguments.at(i + 1), arguments.at(i + 2), QString()});
                i += 2;
            } else {
                complain("--beeline needs two places, for example --beeline \"N53.14 E8.21\" Sydney");
            }
        } else if (argument == QLatin1String("--name") || argument.startsWith(QLatin1String("--name="))) {
            const bool joined = argument != QLatin1String("--name");
            if (!joined && i + 1 >= arguments.size())
                complain("--name needs a text");
            else if (options.beelines.isEmpty())
                complain("--name names the --beeline before it; put the --beeline first");
            else
                options.beelines.last().name = joined ? argument.section(QLatin1Char('='), 1) : arguments.at(++i);
        } else {
            rest.append(argument);
        }
    }
    arguments = rest;
    return trouble;
}

bool KelRenderOptionsReader::readKind(const char *option, bool &wanted, KelDiagnostics &diagnostics) const
{
    const QString name = QString::fromLatin1(option);
    if (!m_parser.isSet(name))
        return true;
    wanted = m_parser.value(name) == QLatin1String("json");
    return wanted
        || fail(diagnostics,
                QStringLiteral("--%1 %2 is not known; use json").arg(name, shown(m_parser.value(name))));
}

/// Names may be joined with their options.
bool KelRenderOptionsReader::isUndecodable(const QString &name) const
{
    return name.contains(QChar::ReplacementCharacter)
        && std::any_of(m_undecodable.cbegin(), m_undecodable.cend(),
                       [&name](const QString &argument) { return argument.endsWith(name); });
}

/// An empty name is most often a variable that was never set, and of two names only one could be obeyed: in both cases
/// something that the user counts on would not happen.
bool KelRenderOptionsReader::checkFileNames(KelDiagnostics &diagnostics) const
{
    for (const char *option : {"output", "export", "selection", "save-selection", "map"}) {
        const QStringList names = m_parser.values(QString::fromLatin1(option));
        if (names.contains(QString()))
            return fail(diagnostics, QStringLiteral("--%1 needs the name of a file").arg(QLatin1String(option)));
        if (names.size() > 1)
            return fail(diagnostics, QStringLiteral("--%1 is given %2 times; once is possible")
                                         .arg(QLatin1String(option))
                                         .arg(names.size()));
        if (isUndecodable(names.value(0)))
            return failUndecodable(QLatin1String(option), names.value(0), diagnostics);
    }
    if (m_parser.positionalArguments().contains(QString()))
        return fail(diagnostics, QStringLiteral("the name of an input is empty"));
    if (m_parser.value(QStringLiteral("save-selection")) == QLatin1String("-"))
        return fail(diagnostics, QStringLiteral("--save-selection cannot go to standard output: the tracks are stored "
                                                "beside the file; name a file"));
    return true;
}

bool KelRenderOptionsReader::readOutput(KelRenderOptions &options, KelDiagnostics &diagnostics) const
{
    options.outputFile = m_parser.value(QStringLiteral("output"));
    options.exportFile = m_parser.value(QStringLiteral("export"));

    if (m_parser.isSet(QStringLiteral("format"))) {
        const auto format = KelPictureFormat::fromName(m_parser.value(QStringLiteral("format")));
        if (!format) {
            return fail(diagnostics,
                        QStringLiteral("--format %1 is not known; use one of %2")
                            .arg(shown(m_parser.value(QStringLiteral("format"))), KelPictureFormat::allNames()));
        }
        options.format = *format;
    } else if (!options.outputFile.isEmpty() && !options.toStandardOutput()) {
        const QString suffix = QFileInfo(options.outputFile).suffix();
        const auto format = KelPictureFormat::fromName(suffix);
        if (!format) {
            const QString what = suffix.isEmpty() ? QStringLiteral("the name has no suffix")
                                                  : QStringLiteral("a .%1 file cannot be written").arg(shown(suffix));
            diagnostics.error(
                KelExitCode::UnsupportedFormat, options.outputFile,
                QStringLiteral("%1; end the name with one of %2, or use --format").arg(what, KelPictureFormat::allNames()));
            return false;
        }
        options.format = *format;
    }
    if (!options.exportFile.isEmpty() && QFileInfo(options.exportFile).suffix().toLower() != QLatin1String("gpx")) {
        diagnostics.error(
            KelExitCode::UnsupportedFormat, options.exportFile,
            QStringLiteral("only GPX can be exported; end the name with .gpx"));
        return false;
    }
    return true;
}

bool KelRenderOptionsReader::readNumbers(KelRenderOptions &options, KelDiagnostics &diagnostics) const
{
    if (m_parser.isSet(QStringLiteral("size"))) {
        const QString text = m_parser.value(QStringLiteral("size"));
        const auto size = parseSize(text);
        if (!size)
            return fail(
                diagnostics,
                QStringLiteral("--size %1 is not a size; use WIDTHxHEIGHT in pixels, for example 1600x1000")
                    .arg(shown(text)));
        const int most = options.format.maximumSide();
        if (size->width() < SMALLEST_SIDE || size->height() < SMALLEST_SIDE || size->width() > most
            || size->height() > most)
            return fail(diagnostics,
                        QStringLiteral("--size %1: each side must have %2 to %3 pixels")
                            .arg(shown(text))
                            .arg(SMALLEST_SIDE)
                            .arg(most));
        if (static_cast<qint64>(size->width()) * size->height() > MOST_PIXELS)
            return fail(diagnostics,
                        QStringLiteral(
                            "--size %1: at most %2 million pixels; use pdf or svg with a smaller size for large prints")
                            .arg(shown(text))
                            .arg(MOST_PIXELS / 1'000'000));
        options.size = size;
    }
    const auto take = [&](const char *name, double least, double most, auto &target) {
        const QString key = QString::fromLatin1(name);
        if (!m_parser.isSet(key))
            return true;
        const auto value = number(m_parser.value(key), least, most);
        if (!value) {
            return fail(diagnostics,
                        QStringLiteral("--%1 %2: a number from %3 to %4 is needed")
                            .arg(key, shown(m_parser.value(key)), QString::number(least), QString::number(most)));
        }
        target = static_cast<std::remove_reference_t<decltype(target)>>(*value);
        return true;
    };
    if (!take("scale-factor", 0.05, 20.0, options.scaleFactor) || !take("padding", 0.0, 45.0, options.padding)
        || !take("quality", 1.0, 100.0, options.quality))
        return false;

    if (m_parser.isSet(QStringLiteral("crop"))) {
        const QString text = m_parser.value(QStringLiteral("crop")).trimmed();
        const bool percent = text.endsWith(QLatin1Char('%'));
        const auto value = percent ? number(text.chopped(1), 0, 100) : number(text, 0, 255);
        if (!value)
            return fail(diagnostics,
                        QStringLiteral("--crop %1: an opacity from 0 to 255 or a percentage is needed")
                            .arg(shown(text)));
        options.croppingOpacity = static_cast<int>(std::lround(percent ? *value * 2.55 : *value));
    }
    return true;
}

bool KelRenderOptionsReader::readMap(KelRenderOptions &options, KelDiagnostics &diagnostics) const
{
    const auto takeBounds = [&](const QString &name, std::optional<KelMapBounds> &bounds) {
        if (!m_parser.isSet(name))
            return true;
        bounds = KelMapBounds::parse(m_parser.value(name));
        if (!bounds) {
            return fail(
                diagnostics,
                QStringLiteral("--%1 %2: four numbers SOUTH,WEST,NORTH,EAST in degrees are needed, south below north, "
                               "for example 53.0,8.1,53.2,8.4")
                    .arg(name, shown(m_parser.value(name))));
        }
        return true;
    };
    if (!takeBounds(QStringLiteral("bounds"), options.bounds)
        || !takeBounds(QStringLiteral("map-bounds"), options.mapBounds))
        return false;

    options.dark = m_parser.isSet(QStringLiteral("dark"));
    options.mapFile = m_parser.value(QStringLiteral("map"));
    const bool noMap = m_parser.isSet(QStringLiteral("no-map"));
    if (options.mapFile.isEmpty() == options.mapBounds.has_value())
        return fail(diagnostics,
                    QStringLiteral("--map and --map-bounds need each other: the picture, and the area that it shows"));
    if (noMap && !options.mapFile.isEmpty())
        return fail(diagnostics, QStringLiteral("--map and --no-map contradict each other"));
    if (noMap)
        options.map = KelRenderOptions::Map::None;
    else
        options.map = options.mapFile.isEmpty() ? KelRenderOptions::Map::World : KelRenderOptions::Map::Picture;
    return true;
}

bool KelRenderOptionsReader::readStyle(KelStyleOptions &style, KelDiagnostics &diagnostics) const
{
    const auto takeColor = [&](const QString &name, std::optional<QColor> &color) {
        if (!m_parser.isSet(name))
            return true;
        const QColor value(m_parser.value(name));
        if (!value.isValid())
            return fail(diagnostics,
                        QStringLiteral("--%1 %2 is not a colour; use a name such as red, #rrggbb or #aarrggbb")
                            .arg(name, shown(m_parser.value(name))));
        color = value.toRgb();
        return true;
    };
    const auto takeNumber = [&](const QString &name, double least, double most, auto &target) {
        if (!m_parser.isSet(name))
            return true;
        const auto value = number(m_parser.value(name), least, most);
        if (!value)
            return fail(diagnostics,
                        QStringLiteral("--%1 %2: a number from %3 to %4 is needed")
                            .arg(name, shown(m_parser.value(name)), QString::number(least), QString::number(most)));
        target = static_cast<typename std::remove_reference_t<decltype(target)>::value_type>(*value);
        return true;
    };
    if (!takeColor(QStringLiteral("line-color"), style.lineColor)
        || !takeColor(QStringLiteral("fill-color"), style.fillColor)
        || !takeNumber(QStringLiteral("line-width"), 0.0, 1000.0, style.lineWidth)
        || !takeNumber(QStringLiteral("halo-width"), 0.0, 1000.0, style.haloWidth)
        || !takeNumber(QStringLiteral("smoothing"), 0.0, 100.0, style.smoothing)
        || !takeNumber(QStringLiteral("smoothing-steps"), 1.0, 1e9, style.smoothingSteps))
        return false;

    if (m_parser.isSet(QStringLiteral("pen-style"))) {
        static const std::map<QString, Qt::PenStyle> styles = {{QStringLiteral("solid"), Qt::SolidLine},
                                                               {QStringLiteral("dash"), Qt::DashLine},
                                                               {QStringLiteral("dot"), Qt::DotLine},
                                                               {QStringLiteral("dash-dot"), Qt::DashDotLine},
                                                               {QStringLiteral("dash-dot-dot"), Qt::DashDotDotLine},
                                                               {QStringLiteral("none"), Qt::NoPen}};
        const auto found = styles.find(m_parser.value(QStringLiteral("pen-style")).toLower());
        if (found == styles.end())
            return fail(
                diagnostics,
                QStringLiteral("--pen-style %1 is not known; use solid, dash, dot, dash-dot, dash-dot-dot or none")
                    .arg(shown(m_parser.value(QStringLiteral("pen-style")))));
        style.penStyle = KelPenStyle(found->second);
    }

    const auto takeKeys = [&](const QString &name, auto wrapper, std::optional<int> &target) {
        using Wrapper = decltype(wrapper);
        if (!m_parser.isSet(name))
            return true;
        const QString list = m_parser.value(name);
        if (!allKeysKnown<Wrapper>(list))
            return fail(
                diagnostics,
                QStringLiteral("--%1 %2 is not known; kel-render --help lists the words that are")
                    .arg(name, shown(list)));
        target = Wrapper(list).toInt();
        return true;
    };
    return takeKeys(QStringLiteral("display-options"), KelGPXTrackDisplayOptions(), style.displayOptions)
        && takeKeys(QStringLiteral("marker"), KelGPXMarkerShape(), style.markerShape)
        && takeKeys(QStringLiteral("shape"), KelGPXTrackShape(), style.trackShape);
}

bool KelRenderOptionsReader::checkWhole(const KelRenderOptions &options, KelDiagnostics &diagnostics) const
{
    if (options.inputs.isEmpty() && options.beelines.isEmpty() && options.selectionFile.isEmpty())
        return fail(
            diagnostics,
            QStringLiteral("no tracks named; give GPX, KML or KMZ files or folders, or --beeline (kel-render --help)"));
    const bool json = options.report || options.stats;
    if (options.outputFile.isEmpty() && !options.info && !json && options.exportFile.isEmpty()
        && options.saveSelectionFile.isEmpty())
        return fail(
            diagnostics,
            QStringLiteral("no result named; use -o map.png for a picture, or --info, --report, --export, --save-selection"));
    const QString jsonNames = options.report && options.stats ? QStringLiteral("--report, --stats")
        : options.report                                      ? QStringLiteral("--report")
                                                              : QStringLiteral("--stats");
    if (options.toStandardOutput() && (options.info || json))
        return fail(diagnostics,
                    QStringLiteral("-o - and %1 would mix on standard output; write the picture to a file")
                        .arg(options.info ? QStringLiteral("--info") : jsonNames));
    if (options.info && json)
        return fail(diagnostics,
                    QStringLiteral("--info and %1 would mix on standard output; --report tells all that --info does")
                        .arg(jsonNames));
    return true;
}

QString KelRenderOptionsReader::helpText() const
{
    constexpr int COLUMN = 30;
    constexpr int WIDTH = 100;
    QString text = QString::fromLatin1(INTRODUCTION);
    for (const OptionText &option : OPTIONS) {
        const QStringList names = QString::fromLatin1(option.names).split(QLatin1Char(','));
        QString head = names.size() > 1 ? QStringLiteral("  -%1, --%2").arg(names.first(), names.last())
                                        : QStringLiteral("      --%1").arg(names.first());
        if (option.value)
            head += QStringLiteral(" <%1>").arg(QLatin1String(option.value));
        QString line = head.leftJustified(COLUMN);
        if (head.size() >= COLUMN) {
            text += head + QLatin1Char('\n');
            line = QString(COLUMN, QLatin1Char(' '));
        }
        bool lineIsNew = true;
        const QStringList words = QString::fromUtf8(option.description).split(QLatin1Char(' '));
        for (const QString &word : words) {
            if (!lineIsNew && line.size() + 1 + word.size() > WIDTH) {
                text += line + QLatin1Char('\n');
                line = QString(COLUMN, QLatin1Char(' '));
                lineIsNew = true;
            }
            line += (lineIsNew ? QString() : QStringLiteral(" ")) + word;
            lineIsNew = false;
        }
        text += line + QLatin1Char('\n');
    }
    return text + QString::fromLatin1(CONCLUSION);
}
