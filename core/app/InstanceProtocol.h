#pragma once

#include "core/app/Invocation.h"

#include <QByteArray>
#include <QString>

#include <optional>

/// How a second start of Plim talks to the first: one line of JSON there, one line back.
namespace InstanceProtocol
{
/// Bytes of a line; who sends more is not listened to.
inline constexpr qsizetype longestLine = 8192;

enum class Answer {
    Ok,     ///< it is being carried out
    Unknown ///< another version of Plim, perhaps
};

/// Where the Plim with these notes listens; empty when its user has no directory for such things.
/// The same for every way to write the directory.
[[nodiscard]] QString socketPath(const QString &dataDirectory);

// With the end of the line, and without.
[[nodiscard]] QByteArray encodeRequest(const Invocation &invocation);
/// Empty for anything that cannot be carried out.
[[nodiscard]] std::optional<Invocation> decodeRequest(const QByteArray &line);

[[nodiscard]] QByteArray encodeAnswer(Answer answer);
[[nodiscard]] std::optional<Answer> decodeAnswer(const QByteArray &line);
} // namespace InstanceProtocol
