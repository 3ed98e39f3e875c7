#pragma once

#include "pages/PageEngine.h"

#include <QObject>
#include <QPageLayout>
#include <QString>
#include <QTimer>

#include <chrono>
#include <memory>

class QTemporaryDir;

/// Sets HTML in pages, out of sight: HiddenPage says what it may load. One document at a time.
class PdfRenderer : public QObject
{
    Q_OBJECT

public:
    enum class Failure {
        busy,        ///< another document is still being set
        cannotWrite, ///< no room for the document's temporary file
        cannotLoad,
        cannotPrint,
        tookTooLong,
        rendererDied, ///< the engine's process ended
    };
    Q_ENUM(Failure)

    explicit PdfRenderer(PageFolders folders, QObject *parent = nullptr);
    ~PdfRenderer() override;

    /// Answers by `rendered` or `failed`, and by one of them only.
    void render(const QString &html, const QPageLayout &layout);
    /// Nothing will be answered.
    void cancel();
    /// How long one document may take; a minute unless told.
    void setPatience(std::chrono::milliseconds patience) { m_patience = patience; }

    /// The page, once there was something to render.
    [[nodiscard]] HiddenPage *page() const { return m_page.get(); }

Q_SIGNALS:
    void rendered(const QByteArray &pdf);
    void failed(PdfRenderer::Failure failure);

private:
    void openPage();
    void print();
    void fail(Failure failure);
    void putAway();

    PageFolders m_folders;
    QPageLayout m_layout;
    std::chrono::milliseconds m_patience = std::chrono::minutes(1);
    QTimer m_timer;
    std::unique_ptr<QTemporaryDir> m_directory;
    std::unique_ptr<HiddenPage> m_page;
    std::unique_ptr<HiddenPage> m_retired; ///< failed, and about to go
    quint64 m_job = 0;
    bool m_isBusy = false;
};
