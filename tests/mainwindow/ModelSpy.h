#pragma once

#include "mainwindow/NoteListModel.h"

#include <QObject>
#include <QStringList>

/// What a model has told of itself since.
class ModelSpy : public QObject
{
public:
    explicit ModelSpy(const NoteListModel &model)
    {
        connect(&model, &NoteListModel::rowsInserted, this,
                [this](const QModelIndex &, int first, int last) {
                    told << QStringLiteral("insert %1-%2").arg(first).arg(last);
                });
        connect(&model, &NoteListModel::rowsRemoved, this,
                [this](const QModelIndex &, int first, int last) {
                    told << QStringLiteral("remove %1-%2").arg(first).arg(last);
                });
        connect(&model, &NoteListModel::rowsMoved, this,
                [this](const QModelIndex &, int first, int last, const QModelIndex &, int to) {
                    told << QStringLiteral("move %1-%2 to %3").arg(first).arg(last).arg(to);
                });
        connect(&model, &NoteListModel::dataChanged, this,
                [this](const QModelIndex &first, const QModelIndex &last) {
                    told << QStringLiteral("change %1-%2").arg(first.row()).arg(last.row());
                });
        connect(&model, &NoteListModel::modelReset, this,
                [this] { told << QStringLiteral("reset"); });
        connect(&model, &NoteListModel::layoutChanged, this,
                [this] { told << QStringLiteral("layout"); });
    }
    QStringList told;
};
