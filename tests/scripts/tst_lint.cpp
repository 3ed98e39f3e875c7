#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
struct Answer {
    int exitCode;
    QString text;
};

/// What scripts/lint says of these files through one of its tools.
Answer lint(const QString &tool, const QStringList &files)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(QStringLiteral(PLIM_SOURCES "/scripts/lint"), QStringList{tool} + files);
    if (!process.waitForFinished(-1))
        return {-1, process.errorString()};
    return {process.exitCode(), QString::fromUtf8(process.readAll())};
}

/// Below the sources: the tools look for what they are asked in the folders above a file.
class Plants
{
public:
    [[nodiscard]] QString add(const QString &name, const QByteArray &text) const
    {
        QFile file(m_folder.filePath(name));
        return file.open(QIODevice::WriteOnly) && file.write(text) == text.size() ? file.fileName()
                                                                                  : QString();
    }

private:
    QTemporaryDir m_folder{QStringLiteral(PLIM_SOURCES "/build/planted-XXXXXX")};
};
} // namespace

/// A tool that finds nothing may be one that looks at nothing: each is given a fault that it knows.
class TestLint : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aPlantedFaultIsFound_data()
    {
        QTest::addColumn<QString>("tool");
        QTest::addColumn<QString>("suffix");
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QString>("finding");

        QTest::newRow("what was moved is used")
            << u"clang-tidy"_s << u"cpp"_s
            << "#include <string>\n#include <utility>\n"
               "std::size_t size(std::string from)\n{\n"
               "    const std::string to = std::move(from);\n    return from.size() + to.size();\n}\n"_ba
            << u"bugprone-use-after-move"_s;
        QTest::newRow("in a test, which has a main function")
            << u"clang-tidy"_s << u"cpp"_s
            << "#include <string>\n#include <utility>\n"
               "int main(int count, char **)\n{\n    std::string from(count, 'a');\n"
               "    const std::string to = std::move(from);\n    return int(from.size() + to.size());\n}\n"_ba
            << u"bugprone-use-after-move"_s;
        QTest::newRow("a copy for each round of a loop")
            << u"clang-tidy"_s << u"cpp"_s
            << "#include <string>\n#include <vector>\n"
               "std::size_t size(const std::vector<std::string> &words)\n{\n    std::size_t sum = "
               "0;\n"
               "    for (const std::string word : words)\n        sum += word.size();\n    return sum;\n}\n"_ba
            << u"performance-for-range-copy"_s;
        QTest::newRow("what does not compile")
            << u"clang-tidy"_s << u"cpp"_s << "int size() { return count; }\n"_ba
            << u"clang-diagnostic-error"_s;
        QTest::newRow("beyond the end")
            << u"cppcheck"_s << u"cpp"_s
            << "int last()\n{\n    int values[3] = {1, 2, 3};\n    return values[3];\n}\n"_ba
            << u"arrayIndexOutOfBounds"_s;
        QTest::newRow("an endless condition")
            << u"cppcheck"_s << u"cpp"_s
            << "bool isOne(int value)\n{\n    if (value == 1 && value == 2)\n        return true;\n"
               "    return false;\n}\n"_ba
            << u"incorrectLogicOperator"_s;
        QTest::newRow("a name from nowhere")
            << u"qmllint"_s << u"qml"_s << "import QtQuick\n\nItem {\n    width: nowhere\n}\n"_ba
            << u"Unqualified access"_s;
        QTest::newRow("a property that there is not")
            << u"qmllint"_s << u"qml"_s
            << "import QtQuick\nimport Plim.Shell\n\nItem {\n    width: Theme.nowhere\n}\n"_ba
            << u"nowhere"_s;
        QTest::newRow("an import that nobody needs")
            << u"qmllint"_s << u"qml"_s
            << "import QtQuick\nimport QtQuick.Layouts\n\nItem {\n    width: 1\n}\n"_ba
            << u"Unused import"_s;
    }
    void aPlantedFaultIsFound()
    {
        QFETCH(QString, tool);
        QFETCH(QString, suffix);
        QFETCH(QByteArray, text);
        QFETCH(QString, finding);
        const Plants plants;
        const QString file = plants.add(u"Planted."_s + suffix, text);
        QVERIFY(!file.isEmpty());

        const Answer answer = lint(tool, {file});
        QCOMPARE(answer.exitCode, 1);
        QVERIFY2(answer.text.contains(finding), qPrintable(answer.text));
        QVERIFY2(answer.text.contains(u"Planted."_s + suffix), qPrintable(answer.text));
    }

    void whatHasNoFaultIsPassed_data()
    {
        QTest::addColumn<QString>("tool");
        QTest::addColumn<QString>("suffix");
        QTest::addColumn<QByteArray>("text");
        const QByteArray sum = "int sum(int a, int b)\n{\n    return a + b;\n}\n"_ba;
        QTest::newRow("clang-tidy") << u"clang-tidy"_s << u"cpp"_s << sum;
        QTest::newRow("cppcheck") << u"cppcheck"_s << u"cpp"_s << sum;
        QTest::newRow("qmllint") << u"qmllint"_s << u"qml"_s
                                 << "import QtQuick\n\nItem {\n    width: 1\n}\n"_ba;
    }
    void whatHasNoFaultIsPassed()
    {
        QFETCH(QString, tool);
        QFETCH(QString, suffix);
        QFETCH(QByteArray, text);
        const Plants plants;
        const Answer answer = lint(tool, {plants.add(u"Planted."_s + suffix, text)});
        QCOMPARE(answer.text, QString());
        QCOMPARE(answer.exitCode, 0);
    }

    /// Several sources are read as one, and the names of one must not be in the way of another.
    void eachOfSeveralSourcesHasItsOwnNames()
    {
        const Plants plants;
        const QString first =
            plants.add(u"First.cpp"_s,
                       "namespace\n{\nstruct Kind {\n    int number;\n};\n} // namespace\n"
                       "int number()\n{\n    const Kind kind{1};\n    return kind.number;\n}\n"_ba);
        const QString second = plants.add(
            u"Second.cpp"_s, "namespace\n{\nenum class Kind { one };\n} // namespace\n"
                             "bool isOne(int kind)\n{\n    return kind == int(Kind::one);\n}\n"_ba);
        const Answer answer = lint(u"clang-tidy"_s, {first, second});
        QCOMPARE(answer.text, QString());
        QCOMPARE(answer.exitCode, 0);
    }
};

QTEST_GUILESS_MAIN(TestLint)
#include "tst_lint.moc"
