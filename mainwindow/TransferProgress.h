#pragma once

#include <QObject>
#include <QTimer>
#include <qqmlregistration.h>

/// How far an export or import is, for those that take long enough for anybody to wonder.
class TransferProgress : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The main window has one.")
    Q_PROPERTY(bool isShown READ isShown NOTIFY isShownChanged)
    Q_PROPERTY(double share READ share NOTIFY shareChanged)
    Q_PROPERTY(QString text READ text NOTIFY shareChanged)

public:
    enum class Kind { Export, Import };

    explicit TransferProgress(QObject *parent = nullptr);

    [[nodiscard]] bool isShown() const { return m_isShown; }
    [[nodiscard]] double share() const; ///< done, from 0 to 1
    [[nodiscard]] QString text() const; ///< in the current language

    /// Something has begun. It is shown when it has not ended soon.
    void begin(Kind kind, int total);
    void setDone(int done);
    void end();

    /// The user wants it to stop.
    Q_INVOKABLE void cancel();

Q_SIGNALS:
    void isShownChanged();
    void shareChanged();
    void canceled();

private:
    void setIsShown(bool isShown);

    Kind m_kind = Kind::Export;
    int m_done = 0;
    int m_total = 0;
    bool m_isShown = false;
    QTimer m_patience;
};
