#pragma once

#include <QObject>
#include <QStringList>
#include <qqmlregistration.h>

/// What the program says about itself.
class AboutInfo : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The application makes one.")
    Q_PROPERTY(QString version READ version CONSTANT)
    Q_PROPERTY(QString notesFolder READ notesFolder CONSTANT)
    Q_PROPERTY(QStringList licences READ licences CONSTANT)

public:
    explicit AboutInfo(QString notesFolder, QObject *parent = nullptr);

    [[nodiscard]] static QString version();
    [[nodiscard]] const QString &notesFolder() const { return m_notesFolder; }
    /// Whose work is inside, and under which licence; one line each.
    [[nodiscard]] static QStringList licences();

    /// Shows the folder in the desktop's file manager; false when there is none.
    Q_INVOKABLE bool openNotesFolder() const;

private:
    QString m_notesFolder;
};
