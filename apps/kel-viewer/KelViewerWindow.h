// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELVIEWERWINDOW_H
#define KELVIEWERWINDOW_H

#include "KelTrackDocument.h"

#include <QMainWindow>
#include <QUrl>

#include <functional>

class KelFileImporter;
class KelGPXTrackConfiguration;
class KelGeoPosition;
class KelMapView;
class KelProblemBar;
class KelSession;
class KelStyleEditor;
class KelTrackListView;
class QDockWidget;
class QLabel;
class QProgressBar;
class QPushButton;
class QSlider;
class QToolBar;

/// The window: list of tracks, map, style editor, and what the menus offer.
class KelViewerWindow : public QMainWindow
{
    Q_OBJECT

public:
    explicit KelViewerWindow(QWidget *parent = nullptr);
    ~KelViewerWindow() override;

    [[nodiscard]] KelTrackDocument *document() noexcept { return &m_document; }
    /// Track files become new rows; a saved selection replaces the document.
    void open(const QStringList &fileNames);
    /// Continues where the last session ended; false when there is none.
    bool restoreSession();
    /// Writes the picture that the map shows, in the format of the suffix. Reports a failure in the window.
    bool exportPicture(const QString &fileName, const QSize &size, double scaleFactor);

protected:
    void changeEvent(QEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    void connectParts();
    void createMenus();
    void createFileMenu(QToolBar *bar);
    void createEditMenu(QToolBar *bar);
    void createInsertMenu();
    void createViewMenu(QToolBar *bar);
    void createDocks();
    void createStatusBar();
    QAction *addAction(QMenu *menu, const QString &text, const QKeySequence &keys, const std::function<void()> &slot,
                       const QString &objectName);

    void documentChanged();
    void listReordered(int row);
    void showStyle();
    void updateTitle();

    void openDropped(const QList<QUrl> &urls);
    void importFiles(const QList<QUrl> &urls);
    void tracksRead(const QString &fileName, const KelGPXConfiguredTrackList &tracks);
    void importFinished(bool cancelled);
    void applyStyle(const std::function<void(KelGPXTrackConfiguration &)> &change, const QString &text);
    void addTrack(const KelGPXTrack &track, const QString &text);
    void editTrack(int row);
    void renameTrack(const QString &name);
    void removeTracks(const QList<int> &rows);
    void duplicateSelected();
    void moveSelected(int by);

    void newDocument();
    void openTracks();
    void openDocument();
    bool saveDocument();
    bool saveDocumentAs();
    bool save(const QString &fileName);
    bool load(const QString &fileName);
    /// True when there is nothing to lose or the user decided what to do with it.
    bool mayDiscard();
    enum class Answer { Save, Discard, Cancel };
    [[nodiscard]] Answer askAboutChanges();
    void chooseBackground();
    void askExport();
    void showPosition(const KelGeoPosition &position);
    void makeDefault(const KelGPXTrackConfiguration &configuration);
    void showWorldMap();
    [[nodiscard]] QList<QAction *> createUndoActions();

    KelTrackDocument m_document;
    KelSession *m_session;
    KelFileImporter *m_importer;
    KelMapView *m_map;
    KelTrackListView *m_list;
    KelStyleEditor *m_style;
    KelProblemBar *m_problems;
    QSlider *m_cropping;
    QLabel *m_positionLabel;
    QProgressBar *m_progress;
    QPushButton *m_cancel;
    QDockWidget *m_styleDock = nullptr;
    QList<QAction *> m_selectionActions; ///< need a selected track
    bool m_ownMap = false;
    bool m_importing = false;
    bool m_fitAfterImport = false;
    int m_importedRows = 0;
};

#endif
