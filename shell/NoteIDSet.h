#pragma once

#include <QObject>
#include <QSet>
#include <QUuid>
#include <qqmlregistration.h>

/// Some of the notes, as views ask for them: "is this one among them?"
struct NoteIDSet {
    Q_GADGET
    QML_ANONYMOUS
    Q_PROPERTY(int count READ count)

public:
    QSet<QUuid> ids;

    [[nodiscard]] int count() const { return int(ids.size()); }
    [[nodiscard]] Q_INVOKABLE bool contains(const QUuid &id) const { return ids.contains(id); }
    [[nodiscard]] bool operator==(const NoteIDSet &) const = default;
};
