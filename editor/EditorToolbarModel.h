#pragma once

#include "editor/EditorController.h"

#include <QAbstractListModel>
#include <QPointer>
#include <qqmlregistration.h>

/// The buttons of the toolbar, from top to bottom: what each shows, whether it is lit, and the
/// command that it sends.
class EditorToolbarModel : public QAbstractListModel
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(
        EditorController *controller READ controller WRITE setController NOTIFY controllerChanged)

public:
    enum Role {
        LabelRole = Qt::UserRole, ///< a text, or the name of a symbol
        IsSymbolRole,
        IsLitRole,
        HelpTextRole,
        NameRole, ///< for those who hear the interface, in the current language
        EndsGroupRole,
    };

    explicit EditorToolbarModel(QObject *parent = nullptr);

    [[nodiscard]] EditorController *controller() const { return m_controller; }
    void setController(EditorController *controller);

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    /// The button was pressed. A link needs an address first; every other command is run.
    Q_INVOKABLE void press(int row);

Q_SIGNALS:
    void controllerChanged();
    void linkRequested();

private:
    void followFormatState();
    void retranslate();

    QPointer<EditorController> m_controller;
    EditorFormatState m_state;
};
