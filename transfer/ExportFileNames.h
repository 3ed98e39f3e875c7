#pragma once

#include <QHash>
#include <QSet>
#include <QString>

/// The text as a file name, without a suffix, that any file system takes: no signs that mean
/// something to one, no name that Windows keeps for itself, and not too long. Empty when nothing is
/// left.
[[nodiscard]] QString safeFileName(const QString &text);

/// Names for many files of one folder, no two alike, not even where small and capital letters are
/// the same.
class ExportFileNames
{
public:
    /// `untitled` is the name of what has no words to be named by.
    explicit ExportFileNames(QString untitled) : m_untitled(std::move(untitled)) {}

    /// A name that has not been given out yet, in whatever letters; without a suffix.
    [[nodiscard]] QString next(const QString &heading);
    /// Keeps a name from being given out.
    void reserve(const QString &name) { m_taken.insert(name.toCaseFolded()); }

private:
    QString m_untitled;
    QSet<QString> m_taken;
    QHash<QString, int> m_numbers;
};

/// The path itself when nothing is there, else with the first number behind it that is free.
[[nodiscard]] QString freePath(const QString &path);
