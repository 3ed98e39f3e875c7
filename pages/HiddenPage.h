#pragma once

#include <QByteArray>
#include <QPageLayout>
#include <QPageRanges>

#include <functional>

class QUrl;

/// A page out of sight, to be set on paper. It runs no script and loads nothing but its document,
/// the fonts and the notes' pictures.
class HiddenPage
{
public:
    HiddenPage() = default;
    virtual ~HiddenPage() = default;
    Q_DISABLE_COPY_MOVE(HiddenPage)

    /// Answers by `onLoaded`, which is told whether it is there.
    virtual void load(const QUrl &document) = 0;
    /// Answers with the PDF of the wanted pages, of all when no range is given; with nothing when
    /// it cannot be made. The page answers what is open as it goes.
    virtual void print(const std::function<void(const QByteArray &pdf)> &answer,
                       const QPageLayout &layout, const QPageRanges &ranges = {}) = 0;
    /// Of the process that sets the page; 0 while there is none.
    [[nodiscard]] virtual qint64 processId() const = 0;

    std::function<void(bool isLoaded)> onLoaded;
    std::function<void()> onProcessEnded; ///< by itself
};
