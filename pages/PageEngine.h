#pragma once

#include "pages/HiddenPage.h"
#include "pages/PrintOutcome.h"

#include <QString>
#include <QVariant>
#include <QtPlugin>

#include <functional>
#include <memory>

class QObject;
class QPrinter;

/// What a page may load, besides what it carries in itself; local paths.
struct PageFolders {
    QString fonts;
    QString images; ///< the notes' pictures
};

/// What sets pages: Qt's web engine, and its reader of PDF. Their libraries are larger than all
/// else that the program consists of together, and a list of notes needs none of them: they lie
/// behind a module that is loaded with the first page, and not before.
class PageEngine
{
public:
    PageEngine() = default;
    virtual ~PageEngine() = default;
    Q_DISABLE_COPY_MOVE(PageEngine)

    /// Loads the module, which takes a twentieth of a second. Without the module the installation is
    /// broken, and the program ends.
    static void load();
    /// Loads the module when it is asked for the first time.
    [[nodiscard]] static PageEngine &shared();

    /// A script's moment in a page's life.
    enum class Moment {
        creation, ///< there is nothing of the page yet
        ready,    ///< its document has been read
    };

    /// The profile of pages that are shown, a QQuickWebEngineProfile. Nothing of it is kept on
    /// disk.
    [[nodiscard]] virtual QObject *makeProfile(const PageFolders &folders, QObject *parent) = 0;
    /// A QWebEngineScript for the page's own world.
    [[nodiscard]] virtual QVariant makeScript(const QString &name, const QString &source,
                                              Moment moment) = 0;
    [[nodiscard]] virtual std::unique_ptr<HiddenPage>
    makeHiddenPage(const PageFolders &folders) = 0;

    /// 0 when the bytes are no PDF.
    [[nodiscard]] virtual int pageCount(const QByteArray &pdf) = 0;
    /// Prints the pages of a PDF, each on a sheet of the printer, in its range of pages, order and
    /// number of copies. The PDF is expected to have been set for the printer's paper; another size
    /// is fitted in.
    ///
    /// `goesOn` is asked before each sheet, with its number from 0 and how many there are.
    [[nodiscard]] virtual PrintOutcome print(const QByteArray &pdf, QPrinter &printer,
                                             const std::function<bool(int, int)> &goesOn = {}) = 0;
};

Q_DECLARE_INTERFACE(PageEngine, "org.plim.PageEngine")
