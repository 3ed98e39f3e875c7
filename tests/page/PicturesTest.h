#pragma once

#include "tests/page/PageFixture.h"

#include <QByteArray>
#include <QColor>
#include <QDir>
#include <QMimeData>
#include <QSize>
#include <QStringList>
#include <QTemporaryDir>

[[nodiscard]] QByteArray bytesOfPicture(const QColor &color, const char *format,
                                        QSize size = {20, 10});
[[nodiscard]] QByteArray bytesOfGif();
/// A file of a drag or of the clipboard, as the page's own script writes it.
[[nodiscard]] QString scriptFile(const QByteArray &bytes, const QString &name, const QString &type);
[[nodiscard]] QString dataAddress(const QByteArray &bytes, const QString &kind);

/// What tests of pictures begin with: a page with a note in it, and a directory for the files.
class PicturesTest : public QObject
{
    Q_OBJECT

protected:
    void paste(QMimeData *data);
    void drop(const QString &selector, const QStringList &files);
    /// The body with each picture's file as F1, F2, … in the order they stand there.
    QString body();
    [[nodiscard]] QStringList files() const { return QDir(m_images.path()).entryList(QDir::Files); }
    [[nodiscard]] QList<QByteArray> contents();
    [[nodiscard]] bool isShown();
    void holdHost(bool isHeld);

    QTemporaryDir m_images;
    PageFixture m_page;
    const QUuid m_note = QUuid::createUuid();

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
};
