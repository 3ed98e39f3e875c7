#include "core/app/InstanceProtocol.h"

#include "core/app/CommandLine.h"

#include <QCryptographicHash>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace
{
constexpr int currentVersion = 1;
constexpr auto versionKey = "plim"_L1;
constexpr auto commandKey = "command"_L1;
constexpr auto hiddenKey = "hidden"_L1;
constexpr auto activationKey = "activationToken"_L1;
constexpr auto startupKey = "startupID"_L1;
constexpr auto answerKey = "answer"_L1;
constexpr auto ok = "ok"_L1;
constexpr auto unknown = "unknown"_L1;

QByteArray encode(QJsonObject object)
{
    object.insert(versionKey, currentVersion);
    return QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n';
}

std::optional<QJsonObject> decode(const QByteArray &line)
{
    if (line.size() > InstanceProtocol::longestLine)
        return std::nullopt;
    const QJsonObject object = QJsonDocument::fromJson(line).object();
    if (object.value(versionKey).toInt() != currentVersion)
        return std::nullopt;
    return object;
}
} // namespace

// A socket's path has room for a hundred bytes only.
QString InstanceProtocol::socketPath(const QString &dataDirectory)
{
    const QString runtime = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    if (runtime.isEmpty())
        return {};
    const QFileInfo directory(dataDirectory);
    const QString canonical = directory.canonicalFilePath();
    const QByteArray identity =
        (canonical.isEmpty() ? directory.absoluteFilePath() : canonical).toUtf8();
    const QByteArray hash = QCryptographicHash::hash(identity, QCryptographicHash::Sha256).toHex();
    return runtime + u"/plim-"_s + QString::fromLatin1(hash.first(20));
}

QByteArray InstanceProtocol::encodeRequest(const Invocation &invocation)
{
    return encode({{commandKey, invocation.command},
                   {hiddenKey, invocation.isHidden},
                   {activationKey, invocation.token.activationToken},
                   {startupKey, invocation.token.startupID}});
}

std::optional<Invocation> InstanceProtocol::decodeRequest(const QByteArray &line)
{
    const auto object = decode(line);
    if (!object || !object->value(commandKey).isString())
        return std::nullopt;
    const Invocation invocation{
        .command = object->value(commandKey).toString(),
        .isHidden = object->value(hiddenKey).toBool(),
        .token = {object->value(activationKey).toString(), object->value(startupKey).toString()}};
    if (!invocation.command.isEmpty() && !isKnownCommand(invocation.command))
        return std::nullopt;
    return invocation;
}

QByteArray InstanceProtocol::encodeAnswer(Answer answer)
{
    return encode({{answerKey, answer == Answer::Ok ? ok : unknown}});
}

std::optional<InstanceProtocol::Answer> InstanceProtocol::decodeAnswer(const QByteArray &line)
{
    const auto object = decode(line);
    if (!object)
        return std::nullopt;
    const QString answer = object->value(answerKey).toString();
    if (answer == ok)
        return Answer::Ok;
    return answer == unknown ? std::optional(Answer::Unknown) : std::nullopt;
}
