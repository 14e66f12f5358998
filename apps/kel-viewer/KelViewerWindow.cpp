// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelViewerWindow.h"

#include "KelAddPlaceDialog.h"
#include "KelBusyWindow.h"
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
#include "KelTrackPalette.h"
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
#include <QLabel>
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
constexpr int MESSAGE_MS = 5000;

QString documentFilter()
{
    return KelViewerWindow::tr("Gespeicherte Auswahl (*.%1)").arg(QLatin1String(DOCUMENT_SUFFIX));
}

bool isDark(const QPalette &palette)
{
    return palette.color(QPalette::Window).lightness() < palette.color(QPalette::WindowText).lightness();
}

/// A bright map in a dark window hurts.
std::shared_ptr<const KelMapBackground> worldMap(const QPalette &palette)
{
    return std::make_shared<KelWorldBackground>(isDark(palette) ? KelWorldBackground::Dark : KelWorldBackground::Light);
}

} // namespace

KelViewerWindow::KelViewerWindow(QWidget *parent)
    : QMainWindow(parent)
    , m_document(this)
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
    showWorldMap();

    createDocks();
    createMenus();
    createStatusBar();
    connectParts();

    resize(1200, 800);
    m_session->restoreArrangement();
    documentChanged();
    updateTitle();
    m_list->setFocus();
}

KelViewerWindow::~KelViewerWindow() = default;

void KelViewerWindow::connectParts()
{
    connect(&m_document, &KelTrackDocument::selectionChanged, this, &KelViewerWindow::documentChanged);
    connect(&m_document, &KelTrackDocument::titleChanged, this, &KelViewerWindow::updateTitle);
    connect(m_map, &KelMapView::positionHovered, this, &KelViewerWindow::showPosition);
    connect(m_session, &KelSession::failed, m_problems, [this](const QString &message) { m_problems->add(message); });

    connect(m_list, &KelTrackListView::selectionEdited, this, &KelViewerWindow::showStyle);
    connect(m_list, &KelTrackListView::reordered, this, &KelViewerWindow::listReordered);
    connect(m_list, &KelTrackListView::filesDropped, this, [this](const QList<QUrl> &urls) { openDropped(urls); });
    connect(m_list, &KelTrackListView::editRequested, this, &KelViewerWindow::editTrack);
    connect(m_list, &KelTrackListView::deleteRequested, this, [this](int row) { removeTracks({row}); });
    connect(m_list, &KelTrackListView::zoomRequested, m_map, &KelMapView::fitTrack);

    connect(m_style, &KelStyleEditor::edited, this, &KelViewerWindow::applyStyle);
    connect(m_style, &KelStyleEditor::renamed, this, &KelViewerWindow::renameTrack);
    connect(m_style, &KelStyleEditor::defaultRequested, this, &KelViewerWindow::makeDefault);

    connect(m_importer, &KelFileImporter::progress, this, [this](int number, int total, const QString &name) {
        // One file tells nothing of its progress: the bar just moves.
        m_progress->setRange(0, total == 1 ? 0 : total);
        m_progress->setValue(number - 1);
        m_progress->setFormat(tr("%1 von %2: %3").arg(QString::number(number), QString::number(total), name));
    });
    connect(m_importer, &KelFileImporter::tracksRead, this, &KelViewerWindow::tracksRead);
    connect(m_importer, &KelFileImporter::failed, this,
            [this](const KelErrorHistory &errors) { m_problems->add(errors); });
    connect(m_importer, &KelFileImporter::finished, this, &KelViewerWindow::importFinished);
    connect(m_cancel, &QPushButton::clicked, m_importer, &KelFileImporter::cancel);
}

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
    form->addRow(tr("&Karte ringsum:"), m_cropping);
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
    m_styleDock = new QDockWidget(tr("Darstellung"), this);
    m_styleDock->setObjectName(QStringLiteral("styleDock"));
    m_styleDock->setWidget(scroll);
    addDockWidget(Qt::RightDockWidgetArea, m_styleDock);
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
    createFileMenu(bar);
    createEditMenu(bar);
    createInsertMenu();
    createViewMenu(bar);
}

void KelViewerWindow::createFileMenu(QToolBar *bar)
{
    QMenu *file = menuBar()->addMenu(tr("&Datei"));
    addAction(file, tr("&Neu"), QKeySequence::New, [this] { newDocument(); }, QStringLiteral("new"));
    bar->addAction(addAction(
        file, tr("Strecken ö&ffnen …"), QKeySequence(QStringLiteral("Ctrl+I")), [this] { openTracks(); },
        QStringLiteral("import")));
    file->addSeparator();
    addAction(file, tr("Auswahl &laden …"), QKeySequence::Open, [this] { openDocument(); }, QStringLiteral("load"));
    bar->addAction(addAction(
        file, tr("Auswahl &speichern"), QKeySequence::Save, [this] { saveDocument(); }, QStringLiteral("save")));
    addAction(file, tr("Auswahl speichern &unter …"), QKeySequence(QStringLiteral("Ctrl+Shift+S")),
              [this] { saveDocumentAs(); }, QStringLiteral("saveAs"));
    file->addSeparator();
    bar->addAction(addAction(
        file, tr("Bild &exportieren …"), QKeySequence(QStringLiteral("Ctrl+E")), [this] { askExport(); },
        QStringLiteral("export")));
    file->addSeparator();
    addAction(file, tr("&Beenden"), QKeySequence(QStringLiteral("Ctrl+Q")), [this] { close(); },
              QStringLiteral("quit"));
    bar->addSeparator();
}

QList<QAction *> KelViewerWindow::createUndoActions()
{
    QUndoStack *stack = m_document.undoStack();
    auto *undo = new QAction(tr("&Rückgängig"), this);
    undo->setObjectName(QStringLiteral("undo"));
    undo->setShortcut(QKeySequence::Undo);
    connect(undo, &QAction::triggered, stack, &QUndoStack::undo);
    connect(stack, &QUndoStack::canUndoChanged, undo, &QAction::setEnabled);
    connect(stack, &QUndoStack::undoTextChanged, undo, [undo](const QString &text) {
        undo->setText(text.isEmpty() ? tr("&Rückgängig") : tr("&Rückgängig: %1").arg(text));
    });
    auto *redo = new QAction(tr("&Wiederholen"), this);
    redo->setObjectName(QStringLiteral("redo"));
    redo->setShortcuts({QKeySequence(QStringLiteral("Ctrl+Shift+Z")), QKeySequence(QStringLiteral("Ctrl+Y"))});
    connect(redo, &QAction::triggered, stack, &QUndoStack::redo);
    connect(stack, &QUndoStack::canRedoChanged, redo, &QAction::setEnabled);
    connect(stack, &QUndoStack::redoTextChanged, redo, [redo](const QString &text) {
        redo->setText(text.isEmpty() ? tr("&Wiederholen") : tr("&Wiederholen: %1").arg(text));
    });
    for (QAction *action : {undo, redo}) {
        action->setEnabled(false);
        // In a tool bar the step's name would push the other buttons about.
        action->setIconText(action->text().remove(QLatin1Char('&')));
    }
    return {undo, redo};
}

void KelViewerWindow::createEditMenu(QToolBar *bar)
{
    QMenu *edit = menuBar()->addMenu(tr("&Bearbeiten"));
    const QList<QAction *> undo = createUndoActions();
    edit->addActions(undo);
    bar->addActions(undo);
    bar->addSeparator();
    edit->addSeparator();
    QAction *rename = addAction(edit, tr("U&mbenennen"), Qt::Key_F2, [this] {
        const QList<int> rows = m_list->selectedRows();
        if (!rows.isEmpty())
            editTrack(rows.first());
    }, QStringLiteral("rename"));
    QAction *duplicate = addAction(edit, tr("&Verdoppeln"), QKeySequence(QStringLiteral("Ctrl+D")),
                                   [this] { duplicateSelected(); }, QStringLiteral("duplicate"));
    QAction *remove = addAction(edit, tr("&Löschen"), QKeySequence::Delete,
                                [this] { removeTracks(m_list->selectedRows()); }, QStringLiteral("delete"));
    // In the style editor the key belongs to the field that is edited.
    remove->setShortcutContext(Qt::WidgetShortcut);
    m_list->addAction(remove);
    QAction *up = addAction(edit, tr("Nach &oben"), QKeySequence(QStringLiteral("Ctrl+Up")),
                            [this] { moveSelected(-1); }, QStringLiteral("moveUp"));
    QAction *down = addAction(edit, tr("Nach &unten"), QKeySequence(QStringLiteral("Ctrl+Down")),
                              [this] { moveSelected(1); }, QStringLiteral("moveDown"));
    m_selectionActions.append({rename, duplicate, remove, up, down});
    QAction *all = addAction(edit, tr("&Alle auswählen"), QKeySequence::SelectAll, [this] { m_list->selectAll(); },
                             QStringLiteral("selectAll"));
    all->setShortcutContext(Qt::WidgetShortcut);
    m_list->addAction(all);
    edit->addSeparator();
    addAction(edit, tr("&Einstellungen …"), QKeySequence(QStringLiteral("Ctrl+,")),
              [this] { KelPreferencesDialog(this).exec(); }, QStringLiteral("preferences"));
}

void KelViewerWindow::createInsertMenu()
{
    QMenu *insert = menuBar()->addMenu(tr("&Einfügen"));
    addAction(insert, tr("&Ort …"), QKeySequence(QStringLiteral("Ctrl+P")), [this] {
        KelAddPlaceDialog dialog(KelAddPlaceDialog::Place, this);
        if (dialog.exec() == QDialog::Accepted)
            addTrack(dialog.track(), tr("Ort hinzufügen"));
    }, QStringLiteral("addPlace"));
    addAction(insert, tr("&Fluglinie …"), QKeySequence(QStringLiteral("Ctrl+L")), [this] {
        KelAddPlaceDialog dialog(KelAddPlaceDialog::Beeline, this);
        if (dialog.exec() == QDialog::Accepted)
            addTrack(dialog.track(), tr("Fluglinie hinzufügen"));
    }, QStringLiteral("addBeeline"));
}

void KelViewerWindow::createViewMenu(QToolBar *bar)
{
    QMenu *view = menuBar()->addMenu(tr("&Ansicht"));
    bar->addAction(addAction(
        view, tr("&Alles zeigen"), QKeySequence(QStringLiteral("Ctrl+0")), [this] { m_map->fitAll(); },
        QStringLiteral("fitAll")));
    const auto fitSelected = [this] {
        const QList<int> rows = m_list->selectedRows();
        if (!rows.isEmpty())
            m_map->fitTrack(rows.first());
    };
    m_selectionActions.append(addAction(view, tr("Auf Au&swahl zoomen"), QKeySequence(QStringLiteral("Ctrl+9")),
                                        fitSelected, QStringLiteral("fitSelected")));
    QAction *larger = addAction(view, tr("Ver&größern"), {}, [this] { m_map->zoomIn(); }, QStringLiteral("zoomIn"));
    // Where plus is the shifted key of the equals sign, nobody wants to hold Shift.
    larger->setShortcuts({QKeySequence(QStringLiteral("Ctrl++")), QKeySequence(QStringLiteral("Ctrl+="))});
    addAction(view, tr("Ver&kleinern"), QKeySequence(QStringLiteral("Ctrl+-")), [this] { m_map->zoomOut(); },
              QStringLiteral("zoomOut"));
    view->addSeparator();
    addAction(view, tr("&Eigenes Kartenbild …"), {}, [this] { chooseBackground(); }, QStringLiteral("background"));
    addAction(view, tr("&Weltkarte"), {}, [this] { showWorldMap(); }, QStringLiteral("worldMap"));
    view->addSeparator();
    const QList<QDockWidget *> docks = findChildren<QDockWidget *>();
    for (QDockWidget *dock : docks)
        view->addAction(dock->toggleViewAction());
    view->addAction(bar->toggleViewAction());
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
    m_list->showTracks(selection);
    if (m_list->selectedRows() != rows)
        m_list->selectRows(rows);
    m_cropping->setValue(selection.nominalCroppingOpacity());
    m_map->setSelection(selection);
    showStyle();
}

void KelViewerWindow::listReordered(int row)
{
    KelGPXTrackSelection selection = m_document.selection();
    selection.setTracks(m_list->trackModel()->tracks());
    m_document.change(selection, tr("Reihenfolge"));
    m_list->selectRows({row});
    m_list->drawAttention(row);
}

void KelViewerWindow::showStyle()
{
    const QList<int> rows = m_list->selectedRows();
    QList<KelGPXConfiguredTrack> tracks;
    for (int row : rows)
        tracks.append(m_document.selection().value(row));
    m_style->setTracks(tracks);
    for (QAction *action : std::as_const(m_selectionActions))
        action->setEnabled(!rows.isEmpty());
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
        const QString suffix = QFileInfo(fileName).suffix();
        const bool isDocument = suffix.compare(QLatin1String(DOCUMENT_SUFFIX), Qt::CaseInsensitive) == 0;
        if (!isDocument)
            tracks.append(QUrl::fromLocalFile(QFileInfo(fileName).absoluteFilePath()));
        else if (mayDiscard())
            load(fileName);
    }
    importFiles(tracks);
}

void KelViewerWindow::openDropped(const QList<QUrl> &urls)
{
    QStringList names;
    for (const QUrl &url : urls) {
        if (url.isLocalFile())
            names.append(url.toLocalFile());
        else
            m_problems->add(tr("%1: Nur Dateien dieses Rechners können geöffnet werden.").arg(url.toDisplayString()));
    }
    open(names);
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
}

void KelViewerWindow::tracksRead(const QString &fileName, const KelGPXConfiguredTrackList &tracks)
{
    KelGPXTrackSelection selection = m_document.selection();
    const int firstRow = selection.count();
    selection.addTracks(tracks);
    KelTrackPalette(isDark(palette())).distinguish(selection, firstRow);
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
    }
    if (cancelled)
        statusBar()->showMessage(tr("Abgebrochen; was gelesen war, bleibt."), MESSAGE_MS);
    else if (m_importedRows > 0)
        statusBar()->showMessage(tr("%n Strecke(n) gelesen.", nullptr, m_importedRows), MESSAGE_MS);
    else
        statusBar()->showMessage(tr("Es wurde keine Strecke gelesen."), MESSAGE_MS);
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
    const int row = selection.count() - 1;
    KelTrackPalette(isDark(palette())).distinguish(selection, row);
    m_document.change(selection, text);
    m_list->selectRows({row});
    m_list->drawAttention(row);
    if (first)
        m_map->fitAll();
}

void KelViewerWindow::editTrack(int row)
{
    m_list->selectRows({row});
    m_styleDock->show();
    m_styleDock->raise();
    m_style->editName();
}

void KelViewerWindow::renameTrack(const QString &name)
{
    const QList<int> rows = m_list->selectedRows();
    if (rows.size() != 1)
        return;
    const int row = rows.first();
    KelGPXTrackSelection selection = m_document.selection();
    KelGPXConfiguredTrack configured = selection.value(row);
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
    // The next row, so that the key can be pressed again.
    if (!rows.isEmpty() && !selection.isEmpty())
        m_list->selectRows({std::min(rows.first(), selection.count() - 1)});
}

void KelViewerWindow::duplicateSelected()
{
    KelGPXTrackSelection selection = m_document.selection();
    const QList<int> rows = m_list->selectedRows();
    QList<int> added;
    for (int row : rows) {
        added.append(selection.count());
        selection.addTrack(m_document.selection().value(row));
    }
    if (added.isEmpty())
        return;
    m_document.change(selection, tr("Verdoppeln"));
    m_list->selectRows(added);
    m_list->drawAttention(added.last());
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
    open(QFileDialog::getOpenFileNames(this, tr("Strecken öffnen"), {}, tr("Strecken (%1)").arg(filter)));
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
        statusBar()->showMessage(tr("Gespeichert: %1").arg(fileName), MESSAGE_MS);
    return saved;
}

bool KelViewerWindow::mayDiscard()
{
    if (!m_document.isModified())
        return true;
    switch (askAboutChanges()) {
    case Answer::Save:
        return saveDocument();
    case Answer::Discard:
        return true;
    default:
        return false;
    }
}

KelViewerWindow::Answer KelViewerWindow::askAboutChanges()
{
    QMessageBox box(QMessageBox::Question, tr("Ungespeicherte Änderungen"),
                    tr("„%1“ wurde geändert.").arg(m_document.displayName()), QMessageBox::NoButton, this);
    QPushButton *save = box.addButton(tr("&Speichern"), QMessageBox::AcceptRole);
    QPushButton *discard = box.addButton(tr("&Verwerfen"), QMessageBox::DestructiveRole);
    QPushButton *cancel = box.addButton(tr("&Abbrechen"), QMessageBox::RejectRole);
    box.setInformativeText(tr("Sollen die Änderungen gespeichert werden?"));
    box.setDefaultButton(save);
    box.setEscapeButton(cancel);
    box.exec();
    if (box.clickedButton() == save)
        return Answer::Save;
    return box.clickedButton() == discard ? Answer::Discard : Answer::Cancel;
}

void KelViewerWindow::chooseBackground()
{
    KelOwnMapDialog dialog(this);
    if (dialog.exec() != QDialog::Accepted)
        return;
    m_ownMap = true;
    m_map->setBackground(
        std::make_shared<KelPictureBackground>(dialog.image(), dialog.bounds(), worldMap(palette())));
}

void KelViewerWindow::showWorldMap()
{
    m_ownMap = false;
    m_map->setBackground(worldMap(palette()));
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
        return fail(
            tr("Das Bild ist für dieses Format zu groß; höchstens %1 Pixel je Seite.").arg(format->maximumSide()));

    KelViewPicture picture = m_map->picture();
    // The same middle, and at least what the window shows.
    const QSizeF shown = picture.viewport.size();
    picture.viewport.setSize(size);
    picture.viewport.zoomAt(QPointF(size.width() / 2.0, size.height() / 2.0),
                            std::min(size.width() / shown.width(), size.height() / shown.height()));
    picture.density = scaleFactor;
    picture.overlays = true;

    KelPictureEncoder encoder(*format, pixels, scaleFactor);
    QByteArray bytes;
    KelBusyWindow::run(this, tr("Das Bild wird gezeichnet …"), [&] { bytes = encoder.encode(picture); });
    if (bytes.isEmpty())
        return fail(encoder.error());
    KelOutputFile file(fileName);
    if (!file.write(bytes))
        return fail(file.error());
    statusBar()->showMessage(tr("Exportiert: %1").arg(fileName), MESSAGE_MS);
    return true;
}

void KelViewerWindow::showPosition(const KelGeoPosition &position)
{
    QString text = position.isValid() ? position.toString(true) : QString();
    m_positionLabel->setText(text.replace(QLatin1String("<br>"), QLatin1String("  ")));
}

void KelViewerWindow::makeDefault(const KelGPXTrackConfiguration &configuration)
{
    if (m_importing) {
        // The reader thread asks for the default of every track that it reads.
        statusBar()->showMessage(tr("Bitte warten, bis die Dateien gelesen sind."), MESSAGE_MS);
        return;
    }
    // So does the thread that writes the session.
    KelBusyWindow::run(this, tr("Die Sitzung wird gesichert …"), [this] { m_session->finishWriting(); });
    KelSingleton<KelGeoLocationSettings>::instance().setDefaultTrackConfiguration(configuration);
    statusBar()->showMessage(tr("Neue Strecken werden so gezeichnet."), MESSAGE_MS);
}

void KelViewerWindow::changeEvent(QEvent *event)
{
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && !m_ownMap)
        showWorldMap();
}

void KelViewerWindow::closeEvent(QCloseEvent *event)
{
    event->ignore();
    if (KelBusyWindow::isBusy())
        return;
    const Answer answer = m_document.isModified() ? askAboutChanges() : Answer::Discard;
    if (answer == Answer::Cancel || (answer == Answer::Save && !saveDocument()))
        return;
    m_importer->cancel();
    if (m_document.isModified())
        m_session->forgetChanges();
    else
        m_session->saveNow();
    event->accept();
}

void KelViewerWindow::dragEnterEvent(QDragEnterEvent *event)
{
    if (event->mimeData()->hasUrls())
        event->acceptProposedAction();
}

void KelViewerWindow::dragMoveEvent(QDragMoveEvent *event)
{
    if (event->mimeData()->hasUrls())
        event->acceptProposedAction();
}

void KelViewerWindow::dropEvent(QDropEvent *event)
{
    event->acceptProposedAction();
    openDropped(event->mimeData()->urls());
}
