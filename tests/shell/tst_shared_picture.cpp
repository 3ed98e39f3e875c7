#include "shell/SharedPicture.h"

#include <QPainter>
#include <QQuickWindow>
#include <QSignalSpy>
#include <QTest>

namespace
{
/// One colour all over, and how often it was drawn.
class Patch : public SharedPicture
{
public:
    using SharedPicture::SharedPicture;
    void setColor(const QColor &color)
    {
        m_color = color;
        redraw();
    }
    void paint(QPainter *painter) const override
    {
        ++timesDrawn;
        painter->fillRect(boundingRect(), m_color);
    }
    inline static int timesDrawn = 0;

protected:
    [[nodiscard]] QString look() const override { return m_color.name(); }

private:
    QColor m_color = Qt::red;
};

struct Scene {
    Scene()
    {
        window.setColor(Qt::white);
        window.resize(200, 100);
        window.show();
    }
    Patch *add(QPointF at, QSizeF size = {40, 30}) const
    {
        auto *patch = new Patch(window.contentItem());
        patch->setPosition(at);
        patch->setSize(size);
        return patch;
    }
    QColor at(int x, int y) { return window.grabWindow().pixelColor(x, y); }

    QQuickWindow window;
};
} // namespace

class TestSharedPicture : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        QCOMPARE(SharedPicture::keptCount(), 0);
        Patch::timesDrawn = 0;
    }

    void whatLooksTheSameIsDrawnOnce()
    {
        Scene one;
        Scene other;
        one.add({0, 0});
        one.add({50, 0});
        other.add({0, 0});
        QTRY_COMPARE(one.at(60, 10), QColor(Qt::red));
        QTRY_COMPARE(other.at(10, 10), QColor(Qt::red));
        QCOMPARE(one.at(10, 10), QColor(Qt::red));
        QCOMPARE(one.at(45, 10), QColor(Qt::white));
        QCOMPARE(Patch::timesDrawn, 1);
        QCOMPARE(SharedPicture::keptCount(), 1);
    }

    void otherLooksAndSizesAreOtherPictures()
    {
        Scene scene;
        scene.add({0, 0});
        scene.add({50, 0})->setColor(Qt::blue);
        scene.add({100, 0}, {41, 30});
        QTRY_COMPARE(scene.at(60, 10), QColor(Qt::blue));
        QTRY_COMPARE(scene.at(139, 10), QColor(Qt::red));
        QCOMPARE(SharedPicture::keptCount(), 3);
    }

    void whatChangesIsDrawnAnew()
    {
        Scene scene;
        Patch *patch = scene.add({0, 0});
        QTRY_COMPARE(scene.at(10, 10), QColor(Qt::red));
        patch->setColor(Qt::green);
        QTRY_COMPARE(scene.at(10, 10), QColor(Qt::green));
        patch->setWidth(80);
        QTRY_COMPARE(scene.at(70, 10), QColor(Qt::green));
        QCOMPARE(SharedPicture::keptCount(), 1); // nobody shows the others any more
    }

    void nothingIsKeptForNobody()
    {
        {
            Scene scene;
            scene.add({0, 0});
            QTRY_COMPARE(scene.at(10, 10), QColor(Qt::red));
        }
        QCOMPARE(SharedPicture::keptCount(), 0);
    }

    void withoutASizeThereIsNoPicture()
    {
        Scene scene;
        Patch *patch = scene.add({0, 0}, {0, 30});
        QCOMPARE(scene.at(0, 10), QColor(Qt::white));
        QCOMPARE(SharedPicture::keptCount(), 0);
        patch->setWidth(20);
        QTRY_COMPARE(scene.at(10, 10), QColor(Qt::red));
        patch->setWidth(0);
        QTRY_COMPARE(scene.at(10, 10), QColor(Qt::white));
    }
};

QTEST_MAIN(TestSharedPicture)
#include "tst_shared_picture.moc"
