#include "core/app/CommandLine.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <cstdio>

using namespace Qt::StringLiterals;

std::optional<int> answerCommandLine(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(u"Short notes, to keep."_s);
    const QCommandLineOption help({u"h"_s, u"help"_s}, u"Shows this text."_s);
    const QCommandLineOption version({u"v"_s, u"version"_s}, u"Shows the version."_s);
    // A session manager starts the program again in the toolkit's own words: "-session id".
    QCommandLineOption session(u"session"_s, {}, u"id"_s);
    session.setFlags(QCommandLineOption::HiddenFromHelp);
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    parser.addOptions({help, version, session});

    const bool isUnderstood = parser.parse(QCoreApplication::arguments());
    if (!isUnderstood || !parser.positionalArguments().isEmpty()) {
        const QString mistake = isUnderstood
            ? u"Unexpected argument '%1'."_s.arg(parser.positionalArguments().constFirst())
            : parser.errorText();
        std::fprintf(stderr, "plim: %s Try 'plim --help'.\n", qPrintable(mistake));
        return 2;
    }
    if (parser.isSet(help)) {
        std::fputs(qPrintable(parser.helpText()), stdout);
        return 0;
    }
    if (parser.isSet(version)) {
        std::fputs("plim " PLIM_VERSION "\n", stdout);
        return 0;
    }
    return std::nullopt;
}
