#include "tests/page/PicturesTest.h"

#include "editor/EditorProfile.h"
#include "editor/ScriptLiteral.h"
#include "tests/Patience.h"

#include <QBuffer>
#include <QClipboard>
#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;

QByteArray bytesOfPicture(const QColor &color, const char *format, QSize size)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(color);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    if (!image.save(&buffer, format))
        qFatal("no picture of kind %s", format);
    return bytes;
}

QByteArray bytesOfGif()
{
    return QByteArray::fromBase64("R0lGODlhAQABAIAAAP8AAAAAACwAAAAAAQABAAACAkQBADs=");
}

QString scriptFile(const QByteArray &bytes, const QString &name, const QString &type)
{
    return u"new File([Uint8Array.from(atob('%1'), c => c.charCodeAt(0))], '%2', { type: '%3' })"_s
        .arg(QString::fromLatin1(bytes.toBase64()), name, type);
}

QString dataAddress(const QByteArray &bytes, const QString &kind)
{
    return u"data:image/"_s + kind + u";base64,"_s + QString::fromLatin1(bytes.toBase64());
}

void PicturesTest::initTestCase()
{
    EditorProfile::shared().setImagesDirectory(m_images.path());
    QVERIFY(m_page.open(m_note, u"<h1>T</h1>"_s));
}

void PicturesTest::init()
{
    for (const QString &name : files())
        QFile::remove(m_images.filePath(name));
    m_page.coordinator().setImagesDirectory(m_images.path());
}

void PicturesTest::cleanup()
{
    holdHost(false);
    QTRY_COMPARE(m_page.js(u"picturesUnderWay.size"_s).toInt(), 0);
}

/// As if the host took its time: its answers wait in the page.
void PicturesTest::holdHost(bool isHeld)
{
    m_page.js(isHeld
                  ? u"window.storedNow = pictureStored; window.answers = []; "
                    "window.pictureStored = (...answer) => { window.answers.push(answer); }; null"_s
                  : u"if (window.storedNow) { window.pictureStored = storedNow; for (const answer "
                    u"of window.answers) pictureStored(...answer); "
                    "window.storedNow = null; } null"_s);
}

void PicturesTest::paste(QMimeData *data)
{
    QGuiApplication::clipboard()->setMimeData(data);
    m_page.press(Qt::Key_V, Qt::ControlModifier);
}

/// Drops the files at the start of the element's first line.
void PicturesTest::drop(const QString &selector, const QStringList &files)
{
    m_page.js(
        u"{ const data = new DataTransfer(); for (const file of [%1]) data.items.add(file); "
        "const element = document.querySelector(%2); const r = element.getBoundingClientRect(); "
        "element.dispatchEvent(new DragEvent('drop', { dataTransfer: data, bubbles: true, "
        "cancelable: true, "
        "clientX: r.left + 1, clientY: r.top + 8 })); } null"_s.arg(files.join(u", "_s),
                                                                    jsString(selector)));
}

QString PicturesTest::body()
{
    QString text = m_page.body();
    static const QRegularExpression file(u"file://[^\"]*/([0-9A-F-]{36}\\.[a-z]+)"_s);
    for (int n = 1; text.contains(file); ++n)
        text.replace(file.match(text).captured(0), u"F%1"_s.arg(n));
    return text;
}

/// Of the pictures' files, in the order they stand in the note.
QList<QByteArray> PicturesTest::contents()
{
    QList<QByteArray> found;
    for (const QVariant &address :
         m_page.js(u"[...bodyEl.querySelectorAll('img')].map(img => img.getAttribute('src'))"_s)
             .toList()) {
        QFile file(QUrl(address.toString()).toLocalFile());
        if (file.open(QIODevice::ReadOnly))
            found.push_back(file.readAll());
    }
    return found;
}

bool PicturesTest::isShown()
{
    return QTest::qWaitFor(
        [this] {
            return m_page
                .js(u"[...bodyEl.querySelectorAll('img')].every(img => img.complete && img.naturalWidth > 0)"_s)
                .toBool();
        },
        longEnough);
}
