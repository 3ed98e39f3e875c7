#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <initializer_list>
#include <vector>

/// The text in lower case as a comparison without regard to case sees it: one UTF-16 unit for one,
/// so that a place in the folded text is the same place in the text.
[[nodiscard]] QString caseFolded(QString text);

/// Several texts of one thing, made ready to be searched again and again. No query is found across
/// two of them.
[[nodiscard]] QByteArray searchableText(std::initializer_list<QStringView> texts);
/// Puts the same behind what is there: many things' texts in one piece of memory.
void appendSearchable(QByteArray &searchable, std::initializer_list<QStringView> texts);

/// What a user looks for: the typed text without the white space around it. It is one piece, not
/// words, and is compared without regard to case but with regard to accents.
class SearchQuery
{
public:
    SearchQuery() = default;
    explicit SearchQuery(const QString &typed);

    [[nodiscard]] bool operator==(const SearchQuery &) const = default;
    /// Nothing is looked for; it occurs nowhere.
    [[nodiscard]] bool isEmpty() const { return m_folded.isEmpty(); }
    [[nodiscard]] qsizetype length() const { return m_folded.size(); }

    [[nodiscard]] bool occursIn(QByteArrayView searchable) const;
    /// Where it begins in the text, from the left, each behind the end of the one before.
    [[nodiscard]] std::vector<qsizetype> placesIn(const QString &text) const;

private:
    QString m_folded;
    QByteArray m_needle; ///< the same, as in searchable texts
};
