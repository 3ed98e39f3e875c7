#include "sticky/WindowReader.h"

#include <QSignalSpy>
#include <QTest>

namespace
{
struct Fixture {
    /// The windows told of, in order.
    [[nodiscard]] QList<QQuickWindow *> windows() const
    {
        QList<QQuickWindow *> windows;
        for (const auto &call : told)
            windows << call[0].value<QQuickWindow *>();
        return windows;
    }

    QQuickWindow first;
    QQuickWindow second;
    WindowReader reader;
    QSignalSpy told{&reader, &WindowReader::windowRead};
};
using Windows = QList<QQuickWindow *>;
} // namespace

class TestWindowReader : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theWindowIsToldOfATurnLater()
    {
        Fixture f;
        f.reader.setParentItem(f.first.contentItem());
        QCOMPARE(f.told.count(), 0);
        QCoreApplication::processEvents();
        QCOMPARE(f.windows(), Windows{&f.first});
        QCoreApplication::processEvents();
        QCOMPARE(f.told.count(), 1);
    }

    void soIsTheNextWindow()
    {
        Fixture f;
        f.reader.setParentItem(f.first.contentItem());
        QCoreApplication::processEvents();
        f.reader.setParentItem(f.second.contentItem());
        QCoreApplication::processEvents();
        QCOMPARE(f.windows(), (Windows{&f.first, &f.second}));
    }

    void noWindowIsNotToldOf()
    {
        Fixture f;
        QQuickItem parent;
        f.reader.setParentItem(&parent);
        QCoreApplication::processEvents();
        f.reader.setParentItem(f.first.contentItem());
        f.reader.setParentItem(nullptr); // left before its turn
        QCoreApplication::processEvents();
        QCOMPARE(f.told.count(), 0);
    }

    void aReaderThatIsGoneTellsNothing()
    {
        QQuickWindow window;
        {
            WindowReader reader;
            reader.setParentItem(window.contentItem());
        }
        QCoreApplication::processEvents();
    }
};

QTEST_MAIN(TestWindowReader)
#include "tst_window_reader.moc"
