#pragma once

#include <QColor>
#include <QObject>
#include <QStringList>
#include <qqmlregistration.h>

/// The colours and text sizes that a note can have, in the order in which pickers offer them.
class NoteChoices : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(QStringList colors READ colors CONSTANT)
    Q_PROPERTY(QStringList textSizes READ textSizes CONSTANT)
    Q_PROPERTY(QStringList textSizeLabels READ textSizeLabels CONSTANT)

public:
    using QObject::QObject;

    [[nodiscard]] static QStringList colors();         ///< raw values
    [[nodiscard]] static QStringList textSizes();      ///< raw values
    [[nodiscard]] static QStringList textSizeLabels(); ///< the same in both languages
    [[nodiscard]] Q_INVOKABLE static int
    colorIndex(const QString &rawValue); ///< -1 when it is none of them
    [[nodiscard]] Q_INVOKABLE static int
    textSizeIndex(const QString &rawValue); ///< -1 when it is none of them
    [[nodiscard]] Q_INVOKABLE static QColor displayColor(const QString &rawValue);
};
