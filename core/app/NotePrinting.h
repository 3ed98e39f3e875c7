#pragma once

#include "core/Note.h"
#include "transfer/PdfRenderer.h"

#include <QObject>

#include <memory>

class QPrinter;

/// Prints a note as its exported page looks. What is printed into a file stays text. One note at a
/// time.
class NotePrinting : public QObject
{
    Q_OBJECT

public:
    enum class Failure {
        busy,           ///< another note is still being printed
        cannotMakePage, ///< the web engine could not set the note
        noSuchPage,     ///< the note has none of the range that is wanted
        cannotWrite,    ///< the file that was to be printed to
        cannotPrint,    ///< the printer refused
    };
    Q_ENUM(Failure)

    NotePrinting(const QString &fontsDirectory, const QString &imagesDirectory,
                 QObject *parent = nullptr);

    /// Answers by `finished` or `failed`.
    void print(const Note &note, std::shared_ptr<QPrinter> printer);

Q_SIGNALS:
    void finished();
    /// `file` is what could not be written.
    void failed(NotePrinting::Failure failure, const QString &file);

private:
    void send(const QByteArray &pdf);
    void sendRange();
    void writeFile(const QByteArray &pdf);
    void end();
    void fail(Failure failure);

    QString m_fontsDirectory;
    PdfRenderer m_renderer;
    std::shared_ptr<QPrinter> m_printer; ///< while something is on its way to it
};
