#pragma once

#include <QByteArray>
#include <QString>

/// Imports a file with that content and checks the note that comes of it.
void checkImport(const QByteArray &content, const QString &suffix);
