#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>

#include <optional>

// Inline pictures would make the notes file large and every save slow, so they move to files beside
// it. Nothing ever deletes these files: a backup may still show them.

struct MigratedHTML {
    QString html;
    bool changed = false;
};

/// Moves every inline base64 picture of the HTML to a file; what cannot be decoded or written
/// stays.
[[nodiscard]] MigratedHTML migrateImages(const QString &html, const QString &imagesDirectory);

/// Writes a picture given as a base64 data address, as migrateImages does. Empty when it is none,
/// or the disk refuses.
[[nodiscard]] std::optional<QUrl> storeInlineImage(const QString &address,
                                                   const QString &imagesDirectory);

/// Writes a picture under a fresh name. Empty, and logged, when the disk refuses.
[[nodiscard]] std::optional<QUrl> storeImageData(const QByteArray &data, const QString &extension,
                                                 const QString &imagesDirectory);
