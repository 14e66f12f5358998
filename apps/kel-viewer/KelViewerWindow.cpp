// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelViewerWindow.h"

#include "KelAddPlaceDialog.h"
#include "KelExportDialog.h"
#include "KelFileImporter.h"
#include "KelMapView.h"
#include "KelOwnMapDialog.h"
#include "KelOutputFile.h"
#include "KelPictureBackground.h"
#include "KelPictureEncoder.h"
#include "KelPreferencesDialog.h"
#include "KelProblemBar.h"
#include "KelSession.h"
#include "KelStyleEditor.h"
#include "KelTrackListView.h"
#include "KelWorldBackground.h"

#include <KelErrorHistory.h>
#include <KelGeoLocationSettings.h>
#include <KelRequestDiskAccess.h>
#include <KelTrackSelectionFactory.h>

#include <QAction>
#include <QCloseEvent>
#include <QDockWidget>
#include <QFileDialog>
#include <QFileInfo>
#include <QFormLayout>
#include <QGuiApplication>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QMimeData>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollArea>
#include <QSlider>
#include <QStatusBar>
#include <QToolBar>
#include <QVBoxLayout>

#include <algorithm>

namespace
{

constexpr auto DOCUMENT_SUFFIX = "keltracks";

QString documentFilter()
{
    return KelViewerWindow::tr("Gespeicherte Auswahl (*.%1)").arg(QLatin1String(DOCUMENT_SUFFIX));
}

/// Dark tracks on a dark map would be lost, but a bright map in a dark window hurts.
std::shared_ptr<const KelMapBackground> worldMap()
{
    const QPalette palette = QGuiApplication::palette();
    const bool dark = palette.color(QPalette::Window).lightness() < palette.color(QPalette::WindowText).lightness();
    return std::make_shared<KelWorldBackground>(dark ? KelWorldBackground::Dark : KelWorldBackground::Light);
}

} // namespace

KelViewerWindow::KelViewerWindow(QWidget *parent)
    : QMainWindow(parent)
    , m_session(new KelSession(&m_document, this))
    , m_importer(new KelFileImporter(this))
    , m_map(new KelMapView(this))
    , m_list(new KelTrackListView(this))
    , m_style(new KelStyleEditor(this))
    , m_problems(new KelProblemBar(this))
    , m_cropping(new QSlider(Qt::Horizontal, this))
    , m_positionLabel(new QLabel(this))
    , m_progress(new QProgressBar(this))
    , m_cancel(new QPushButton(tr("Abbrechen"), this))
{
    setAcceptDrops(true);
    auto *middle = new QWidget(this);
    auto *layout = new QVBoxLayout(middle);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_problems);
    layout->addWidget(m_map, 1);
    setCentralWidget(middle);
    m_map->setBackground(worldMap());

    createDocks();
    createMenus();
    createStatusBar();

    connect(&m_document, &KelTrackDocument::selectionChanged, this, &KelViewerWindow::documentChanged);
    connect(&m_document, &KelTrackDocument::titleChanged, this, &KelViewerWindow::updateTitle);
    connect(m_map, &KelMapView::positionHovered, this, &KelViewerWindow::showPosition);
    connect(m_session, &KelSession::failed, m_problems, [this](const QString &message) { m_problems->add(message); });

    connect(m_list, &KelTrackListView::selectionEdited, this, &KelViewerWindow::showStyle);
    connect(m_list, &KelTrackListView::reordered, this, &KelViewerWindow::listReordered);
    connect(m_list, &KelTrackListView::filesDropped, this, &KelViewerWindow::importFiles);
    connect(m_list, &KelTrackListView::editRequested, this, &KelViewerWindow::renameTrack);
    connect(m_list, &KelTrackListView::deleteRequested, this, [this](int row) { removeTracks({row}); });
    connect(m_list, &KelTrackListView::zoomRequested, m_map, &KelMapView::fitTrack);
    connect(m_list, &KelTrackListView::duplicateRequested, this, &KelViewerWindow::duplicateTrack);

    connect(m_style, &KelStyleEditor::edited, this, &KelViewerWindow::applyStyle);
    connect(m_style, &KelStyleEditor::defaultRequested, this, [this](const KelGPXTrackConfiguration &configuration) {
        // The reader thread asks for the default of every track that it reads.
        if (m_importing)
            return;
        KelSingleton<KelGeoLocationSettings>::instance().setDefaultTrackConfiguration(configuration);
        statusBar()->showMessage(tr("Neue Strecken werden so gezeichnet."), 4000);
    });

    connect(m_importer, &KelFileImporter::progress, this, [this](int number, int total, const QString &name) {
        m_progress->setRange(0, total);
        m_progress->setValue(number - 1);
        m_progress->setFormat(tr("%1 von %2: %3").arg(QString::number(number), QString::number(total), name));
    });
    connect(m_importer, &KelFileImporter::tracksRead, this, &KelViewerWindow::tracksRead);
    connect(m_importer, &KelFileImporter::failed, this,
            [this](const KelErrorHistory &errors) { m_problems->add(errors); });
    connect(m_importer, &KelFileImporter::finished, this, &KelViewerWindow::importFinished);
    connect(m_cancel, &QPushButton::clicked, m_importer, &KelFileImporter::cancel);

    resize(1200, 800);
    documentChanged();
    updateTitle();
}

KelViewerWindow::~KelViewerWindow() = default;

void KelViewerWindow::createDocks()
{
    auto *side = new QWidget(this);
    auto *layout = new QVBoxLayout(side);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->addWidget(m_list, 1);
    m_cropping->setRange(0, 255);
    m_cropping->setPageStep(16);
    m_cropping->setObjectName(QStringLiteral("cropping"));
    m_cropping->setAccessibleName(tr("Sichtbarkeit der Karte"));
    m_cropping->setToolTip(tr("Wie stark die Karte außerhalb der Strecken zu sehen ist."));
    auto *form = new QFormLayout;
    form->addRow(tr("&Karte:"), m_cropping);
    layout->addLayout(form);
    connect(m_cropping, &QSlider::valueChanged, this, [this](int value) {
        KelGPXTrackSelection selection = m_document.selection();
        if (selection.setCroppingOpacity(value))
            m_document.change(selection, tr("Sichtbarkeit der Karte"), KelTrackDocument::ChangeKind::Cropping);
    });

    auto *tracks = new QDockWidget(tr("Strecken"), this);
    tracks->setObjectName(QStringLiteral("tracksDock"));
    tracks->setWidget(side);
    addDockWidget(Qt::LeftDockWidgetArea, tracks);

    auto *scroll = new QScrollArea(this);
    scroll->setWidget(m_style);
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    auto *style = new QDockWidget(tr("Darstellung"), this);
    style->setObjectName(QStringLiteral("styleDock"));
    style->setWidget(scroll);
    addDockWidget(Qt::RightDockWidgetArea, style);
}

QAction *KelViewerWindow::addAction(QMenu *menu, const QString &text, const QKeySequence &keys,
                                    const std::function<void()> &slot, const QString &objectName)
{
    QAction *action = menu->addAction(text);
    action->setShortcut(keys);
    action->setObjectName(objectName);
    connect(action, &QAction::triggered, this, slot);
    return action;
}

void KelViewerWindow::createMenus()
{
    auto *bar = addToolBar(tr("Werkzeuge"));
    bar->setObjectName(QStringLiteral("toolBar"));
    bar->setToolButtonStyle(Qt::ToolButtonTextOnly);

    QMenu *file = menuBar()->addMenu(tr("&Datei"));
    addAction(file, tr("&Neu"), QKeySequence::New, [this] { newDocument(); }, QStringLiteral("new"));
    bar->addAction(addAction(
        file, tr("Strecken ö&ffnen …"), QKeySequence(tr("Ctrl+I")), [this] { openTracks(); }, QStringLiteral("import")));
    file->addSeparator();
    addAction(file, tr("Auswahl &laden …"), QKeySequence::Open, [this] { openDocument(); }, QStringLiteral("load"));
    bar->addAction(addAction(
        file, tr("Auswahl &speichern"), QKeySequence::Save, [this] { saveDocument(); }, QStringLiteral("save")));
    addAction(file, tr("Auswahl speichern &unter …"), QKeySequence::SaveAs, [this] { saveDocumentAs(); },
              QStringLiteral("saveAs"));
    file->addSeparator();
    bar->addAction(addAction(
        file, tr("Bild &exportieren …"), QKeySequence(tr("Ctrl+E")), [this] { askExport(); }, QStringLiteral("export")));
    file->addSeparator();
    addAction(file, tr("&Beenden"), QKeySequence::Quit, [this] { close(); }, QStringLiteral("quit"));

    QMenu *edit = menuBar()->addMenu(tr("&Bearbeiten"));
    QAction *undo = m_document.undoStack()->createUndoAction(this, tr("&Rückgängig:"));
    undo->setShortcut(QKeySequence::Undo);
    undo->setObjectName(QStringLiteral("undo"));
    QAction *redo = m_document.undoStack()->createRedoAction(this, tr("&Wiederholen:"));
    redo->setShortcut(QKeySequence::Redo);
    redo->setObjectName(QStringLiteral("redo"));
    edit->addActions({undo, redo});
    edit->addSeparator();
    addAction(edit, tr("&Umbenennen …"), Qt::Key_F2, [this] {
        const QList<int> rows = m_list->selectedRows();
        if (!rows.isEmpty())
            renameTrack(rows.first());
    }, QStringLiteral("rename"));
    QAction *remove = addAction(edit, tr("&Löschen"), QKeySequence::Delete,
                                [this] { removeTracks(m_list->selectedRows()); }, QStringLiteral("delete"));
    // In the style editor the key belongs to the field that is edited.
    remove->setShortcutContext(Qt::WidgetShortcut);
    m_list->addAction(remove);
    addAction(edit, tr("Nach &oben"), QKeySequence(tr("Ctrl+Up")), [this] { moveSelected(-1); },
              QStringLiteral("moveUp"));
    addAction(edit, tr("Nach &unten"), QKeySequence(tr("Ctrl+Down")), [this] { moveSelected(1); },
              QStringLiteral("moveDown"));
    addAction(edit, tr("&Alle auswählen"), QKeySequence::SelectAll, [this] { m_list->selectAll(); },
              QStringLiteral("selectAll"));
    edit->addSeparator();
    addAction(edit, tr("&Einstellungen …"), QKeySequence::Preferences, [this] { KelPreferencesDialog(this).exec(); },
              QStringLiteral("preferences"));

    QMenu *insert = menuBar()->addMenu(tr("&Einfügen"));
    addAction(insert, tr("&Ort …"), QKeySequence(tr("Ctrl+P")), [this] {
        KelAddPlaceDialog dialog(KelAddPlaceDialog::Place, this);
        if (dialog.exec() == QDialog::Accepted)
            addTrack(dialog.track(), tr("Ort hinzufügen"));
    }, QStringLiteral("addPlace"));
    addAction(insert, tr("&Fluglinie …"), QKeySequence(tr("Ctrl+L")), [this] {
        KelAddPlaceDialog dialog(KelAddPlaceDialog::Beeline, this);
        if (dialog.exec() == QDialog::Accepted)
            addTrack(dialog.track(), tr("Fluglinie hinzufügen"));
    }, QStringLiteral("addBeeline"));

    m_viewMenu = menuBar()->addMenu(tr("&Ansicht"));
    bar->addAction(addAction(
        m_viewMenu, tr("&Alles zeigen"), QKeySequence(tr("Ctrl+0")), [this] { m_map->fitAll(); }, QStringLiteral("fitAll")));
    addAction(m_viewMenu, tr("Auf &Auswahl zoomen"), QKeySequence(tr("Ctrl+9")), [this] {
        const QList<int> rows = m_list->selectedRows();
        if (!rows.isEmpty())
            m_map->fitTrack(rows.first());
    }, QStringLiteral("fitSelected"));
    addAction(m_viewMenu, tr("Ver&größern"), QKeySequence::ZoomIn, [this] { m_map->zoomIn(); }, QStringLiteral("zoomIn"));
    addAction(m_viewMenu, tr("Ver&kleinern"), QKeySequence::ZoomOut, [this] { m_map->zoomOut(); },
              QStringLiteral("zoomOut"));
    m_viewMenu->addSeparator();
    addAction(m_viewMenu, tr("Eigenes &Kartenbild …"), {}, [this] { chooseBackground(); }, QStringLiteral("background"));
    addAction(m_viewMenu, tr("&Weltkarte"), {}, [this] { m_map->setBackground(worldMap()); },
              QStringLiteral("worldMap"));
    m_viewMenu->addSeparator();
    for (QDockWidget *dock : findChildren<QDockWidget *>())
        m_viewMenu->addAction(dock->toggleViewAction());
    m_viewMenu->addAction(bar->toggleViewAction());
}

void KelViewerWindow::createStatusBar()
{
    m_progress->setMinimumWidth(260);
    m_cancel->setObjectName(QStringLiteral("cancelImport"));
    statusBar()->addPermanentWidget(m_positionLabel);
    statusBar()->addPermanentWidget(m_progress);
    statusBar()->addPermanentWidget(m_cancel);
    m_progress->hide();
    m_cancel->hide();
}

void KelViewerWindow::documentChanged()
{
    const KelGPXTrackSelection &selection = m_document.selection();
    const QList<int> rows = m_list->selectedRows();
    m_list->trackModel()->setSelection(selection);
    if (m_list->selectedRows() != rows)
        m_list->selectRows(rows);
    m_cropping->setValue(selection.nominalCroppingOpacity());
    m_map->setSelection(selection);
    showStyle();
}

void KelViewerWindow::listReordered()
{
    KelGPXTrackSelection selection = m_document.selection();
    selection.setTracks(m_list->trackModel()->tracks());
    m_document.change(selection, tr("Reihenfolge"));
}

void KelViewerWindow::showStyle()
{
    QList<KelGPXConfiguredTrack> tracks;
    for (int row : m_list->selectedRows())
        tracks.append(m_document.selection().value(row));
    m_style->setTracks(tracks);
}

void KelViewerWindow::updateTitle()
{
    setWindowTitle(tr("%1[*] – Strecken").arg(m_document.displayName()));
    setWindowModified(m_document.isModified());
}

void KelViewerWindow::open(const QStringList &fileNames)
{
    QList<QUrl> tracks;
    for (const QString &fileName : fileNames) {
        if (QFileInfo(fileName).suffix().compare(QLatin1String(DOCUMENT_SUFFIX), Qt::CaseInsensitive) == 0)
            load(fileName);
        else
            tracks.append(QUrl::fromLocalFile(QFileInfo(fileName).absoluteFilePath()));
    }
    importFiles(tracks);
}

bool KelViewerWindow::restoreSession()
{
    const bool restored = m_session->restore();
    if (restored)
        m_map->fitAll();
    return restored;
}

void KelViewerWindow::importFiles(const QList<QUrl> &urls)
{
    if (urls.isEmpty())
        return;
    if (!m_importing) {
        m_importing = true;
        m_importedRows = 0;
        m_fitAfterImport = m_document.selection().isEmpty();
        m_progress->show();
        m_cancel->show();
    }
    m_importer->read(urls);
    // Nothing to read, for example an empty folder.
    if (!m_importer->isRunning())
        importFinished(false);
}

void KelViewerWindow::tracksRead(const QString &fileName, const KelGPXConfiguredTrackList &tracks)
{
    KelGPXTrackSelection selection = m_document.selection();
    selection.addTracks(tracks);
    m_importedRows += tracks.count();
    m_document.change(selection, tr("%1 öffnen").arg(QFileInfo(fileName).fileName()));
}

void KelViewerWindow::importFinished(bool cancelled)
{
    m_importing = false;
    m_progress->hide();
    m_cancel->hide();
    const int count = m_document.selection().count();
    if (m_importedRows > 0) {
        QList<int> rows;
        for (int row = count - m_importedRows; row < count; ++row)
            rows.append(row);
        m_list->selectRows(rows);
        m_list->drawAttention(rows.last());
        if (m_fitAfterImport)
            m_map->fitAll();
    } else if (!cancelled) {
        statusBar()->showMessage(tr("Es wurde keine Strecke gelesen."), 5000);
    }
    if (cancelled)
        statusBar()->showMessage(tr("Abgebrochen; was gelesen war, bleibt."), 5000);
}

void KelViewerWindow::applyStyle(const std::function<void(KelGPXTrackConfiguration &)> &change, const QString &text)
{
    KelGPXTrackSelection selection = m_document.selection();
    bool changed = false;
    for (int row : m_list->selectedRows()) {
        KelGPXTrackConfiguration configuration = selection.configuration(row);
        change(configuration);
        changed = selection.setConfiguration(row, configuration) || changed;
    }
    if (changed)
        m_document.change(selection, text, KelTrackDocument::ChangeKind::Style);
}

void KelViewerWindow::addTrack(const KelGPXTrack &track, const QString &text)
{
    KelGPXTrackSelection selection = m_document.selection();
    const bool first = selection.isEmpty();
    selection.addTrack(track);
    m_document.change(selection, text);
    const int row = selection.count() - 1;
    m_list->selectRows({row});
    m_list->drawAttention(row);
    if (first)
        m_map->fitAll();
}

void KelViewerWindow::renameTrack(int row)
{
    KelGPXTrackSelection selection = m_document.selection();
    if (!selection.isValidRow(row))
        return;
    KelGPXConfiguredTrack configured = selection.value(row);
    bool accepted = false;
    const QString name = QInputDialog::getText(this, tr("Umbenennen"), tr("Name der Strecke:"), QLineEdit::Normal,
                                               configured.name(), &accepted);
    if (!accepted || name == configured.name())
        return;
    KelGPXTrack track = configured.track();
    track.setName(name);
    configured.setTrack(track);
    QList<KelGPXConfiguredTrack> tracks = selection.tracks().tracks();
    tracks[row] = configured;
    selection.setTracks(KelGPXConfiguredTrackList(tracks));
    m_document.change(selection, tr("Umbenennen"));
}

void KelViewerWindow::removeTracks(const QList<int> &rows)
{
    KelGPXTrackSelection selection = m_document.selection();
    for (auto row = rows.crbegin(); row != rows.crend(); ++row) {
        if (selection.isValidRow(*row))
            selection.removeAt(*row);
    }
    m_document.change(selection, tr("Löschen"));
}

void KelViewerWindow::duplicateTrack(int row)
{
    KelGPXTrackSelection selection = m_document.selection();
    if (!selection.isValidRow(row))
        return;
    selection.addTrack(selection.value(row));
    m_document.change(selection, tr("Verdoppeln"));
    m_list->drawAttention(selection.count() - 1);
}

void KelViewerWindow::moveSelected(int by)
{
    const QList<int> rows = m_list->selectedRows();
    KelGPXTrackSelection selection = m_document.selection();
    if (rows.size() != 1 || !selection.isValidRow(rows.first() + by))
        return;
    selection.moveTrack(rows.first(), rows.first() + by);
    m_document.change(selection, tr("Reihenfolge"));
    m_list->selectRows({rows.first() + by});
}

void KelViewerWindow::newDocument()
{
    if (mayDiscard())
        m_document.clear();
}

void KelViewerWindow::openTracks()
{
    const QString filter = KelTrackSelectionFactory::instance().supportedFileFormats().join(QLatin1Char(' '));
    const QStringList names = QFileDialog::getOpenFileNames(this, tr("Strecken öffnen"), {}, tr("Strecken (%1)").arg(filter));
    open(names);
}

void KelViewerWindow::openDocument()
{
    if (!mayDiscard())
        return;
    const QString name = QFileDialog::getOpenFileName(this, tr("Auswahl laden"), {}, documentFilter());
    if (!name.isEmpty())
        load(name);
}

bool KelViewerWindow::load(const QString &fileName)
{
    KelErrorHistory errors;
    const bool loaded = m_document.load(fileName, errors);
    m_problems->add(errors);
    if (loaded)
        m_map->fitAll();
    return loaded;
}

bool KelViewerWindow::saveDocument()
{
    return m_document.fileName().isEmpty() ? saveDocumentAs() : save(m_document.fileName());
}

bool KelViewerWindow::saveDocumentAs()
{
    QFileDialog dialog(this, tr("Auswahl speichern"), {}, documentFilter());
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix(QLatin1String(DOCUMENT_SUFFIX));
    return dialog.exec() == QDialog::Accepted && save(dialog.selectedFiles().constFirst());
}

bool KelViewerWindow::save(const QString &fileName)
{
    KelErrorHistory errors;
    const bool saved = m_document.save(fileName, errors);
    m_problems->add(errors);
    if (saved)
        statusBar()->showMessage(tr("Gespeichert: %1").arg(fileName), 4000);
    return saved;
}

bool KelViewerWindow::mayDiscard()
{
    if (!m_document.isModified())
        return true;
    QMessageBox box(QMessageBox::Question, tr("Ungespeicherte Änderungen"),
                    tr("„%1“ wurde geändert.").arg(m_document.displayName()),
                    QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, this);
    box.button(QMessageBox::Save)->setText(tr("&Speichern"));
    box.button(QMessageBox::Discard)->setText(tr("&Verwerfen"));
    box.button(QMessageBox::Cancel)->setText(tr("&Abbrechen"));
    switch (box.exec()) {
    case QMessageBox::Save:
        return saveDocument();
    case QMessageBox::Discard:
        return true;
    default:
        return false;
    }
}

void KelViewerWindow::chooseBackground()
{
    KelOwnMapDialog dialog(this);
    if (dialog.exec() == QDialog::Accepted)
        m_map->setBackground(std::make_shared<KelPictureBackground>(dialog.image(), dialog.bounds(), worldMap()));
}

void KelViewerWindow::askExport()
{
    KelExportDialog dialog(m_map->size(), this);
    if (dialog.exec() != QDialog::Accepted)
        return;
    QFileDialog chooser(this, tr("Bild exportieren"), {}, tr("Bilder (*.png *.jpg *.webp *.pdf *.svg)"));
    chooser.setAcceptMode(QFileDialog::AcceptSave);
    chooser.setDefaultSuffix(QStringLiteral("png"));
    if (chooser.exec() == QDialog::Accepted)
        exportPicture(chooser.selectedFiles().constFirst(), dialog.size(), dialog.scaleFactor());
}

bool KelViewerWindow::exportPicture(const QString &fileName, const QSize &size, double scaleFactor)
{
    const auto fail = [this, &fileName](const QString &reason) {
        m_problems->add(tr("%1: %2").arg(fileName, reason));
        return false;
    };
    const auto format = KelPictureFormat::fromName(QFileInfo(fileName).suffix());
    if (!format)
        return fail(tr("Dieses Bildformat gibt es nicht; möglich sind %1.").arg(KelPictureFormat::allNames()));
    const QSize pixels = (QSizeF(size) * scaleFactor).toSize();
    if (pixels.width() > format->maximumSide() || pixels.height() > format->maximumSide())
        return fail(tr("Das Bild ist für dieses Format zu groß; höchstens %1 Pixel je Seite.").arg(format->maximumSide()));

    KelViewPicture picture = m_map->picture();
    // The same middle, and at least what the window shows.
    const QSizeF shown = picture.viewport.size();
    picture.viewport.setSize(size);
    picture.viewport.zoomAt(QPointF(size.width() / 2.0, size.height() / 2.0),
                            std::min(size.width() / shown.width(), size.height() / shown.height()));
    picture.density = scaleFactor;
    picture.overlays = true;

    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    KelPictureEncoder encoder(*format, pixels, scaleFactor);
    const QByteArray bytes = encoder.encode(picture);
    QGuiApplication::restoreOverrideCursor();
    if (bytes.isEmpty())
        return fail(encoder.error());
    KelOutputFile file(fileName);
    if (!file.write(bytes))
        return fail(file.error());
    statusBar()->showMessage(tr("Exportiert: %1").arg(fileName), 4000);
    return true;
}

void KelViewerWindow::showPosition(const KelGeoPosition &position)
{
    m_positionLabel->setText(position.isValid() ? position.toString(true).replace(QLatin1String("<br>"), QLatin1String("  "))
                                                : QString());
}

void KelViewerWindow::closeEvent(QCloseEvent *event)
{
    if (!mayDiscard()) {
        event->ignore();
        return;
    }
    m_importer->cancel();
    m_session->saveNow();
    event->accept();
}

void KelViewerWindow::dragEnterEvent(QDragEnterEvent *event)
{
    if (event->mimeData()->hasUrls())
        event->acceptProposedAction();
}

void KelViewerWindow::dropEvent(QDropEvent *event)
{
    event->acceptProposedAction();
    QStringList names;
    for (const QUrl &url : event->mimeData()->urls())
        names.append(url.toLocalFile());
    open(names);
}
