#include "editor/EditorToolbarModel.h"

#include "editor/RichTextEditorCoordinator.h"
#include "shell/L10n.h"

#include <array>

using namespace Qt::StringLiterals;

namespace
{
struct Button {
    QLatin1StringView label;
    bool isSymbol;
    bool EditorFormatState::*lit; ///< nullptr: never
    QString (*name)();
    EditorCommand (*command)();
    bool endsGroup;
};

template <EditorCommand::Kind kind>
EditorCommand plain()
{
    return EditorCommand(kind);
}

template <int level>
EditorCommand heading()
{
    return EditorCommand::heading(level);
}

using Kind = EditorCommand::Kind;
using State = EditorFormatState;

const std::array buttons{
    Button{"H1"_L1, false, &State::h1, &L10n::heading1, &heading<1>, false},
    Button{"H2"_L1, false, &State::h2, &L10n::heading2, &heading<2>, false},
    Button{"H3"_L1, false, &State::h3, &L10n::heading3, &heading<3>, false},
    Button{"P"_L1, false, &State::p, &L10n::paragraph, &plain<Kind::paragraph>, true},
    Button{"bold"_L1, true, &State::bold, &L10n::bold, &plain<Kind::bold>, false},
    Button{"italic"_L1, true, &State::italic, &L10n::italic, &plain<Kind::italic>, false},
    Button{"underline"_L1, true, &State::underline, &L10n::underline, &plain<Kind::underline>,
           false},
    Button{"strikethrough"_L1, true, &State::strike, &L10n::strikethrough,
           &plain<Kind::strikethrough>, true},
    Button{"list.bullet"_L1, true, &State::bullet, &L10n::bulletList, &plain<Kind::bulletList>,
           false},
    Button{"list.number"_L1, true, &State::ordered, &L10n::numberedList, &plain<Kind::numberedList>,
           false},
    Button{"checklist"_L1, true, &State::checklist, &L10n::checklist, &plain<Kind::checkbox>, true},
    Button{"link"_L1, true, &State::link, &L10n::insertLink, &plain<Kind::link>, false},
    Button{"divide"_L1, true, nullptr, &L10n::divider, &plain<Kind::divider>, false},
};

bool isLit(const Button &button, const EditorFormatState &state)
{
    return button.lit && state.*button.lit;
}
} // namespace

EditorToolbarModel::EditorToolbarModel(QObject *parent) : QAbstractListModel(parent)
{
    connect(&L10n::shared(), &L10n::changed, this, &EditorToolbarModel::retranslate);
}

void EditorToolbarModel::setController(EditorController *controller)
{
    if (m_controller == controller)
        return;
    if (m_controller)
        m_controller->disconnect(this);
    m_controller = controller;
    if (m_controller) {
        connect(m_controller, &EditorController::formatStateChanged, this,
                &EditorToolbarModel::followFormatState);
        connect(m_controller, &QObject::destroyed, this, &EditorToolbarModel::followFormatState);
    }
    followFormatState();
    Q_EMIT controllerChanged();
}

int EditorToolbarModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(buttons.size());
}

QVariant EditorToolbarModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const Button &button = buttons.at(std::size_t(index.row()));
    switch (role) {
    case Qt::DisplayRole:
    case LabelRole:
        return QString(button.label);
    case IsSymbolRole:
        return button.isSymbol;
    case IsLitRole:
        return isLit(button, m_state);
    case HelpTextRole:
        return isLit(button, m_state) ? button.label + L10n::activeSuffix() : QString(button.label);
    case NameRole:
        return button.name();
    case EndsGroupRole:
        return button.endsGroup;
    default:
        return {};
    }
}

QHash<int, QByteArray> EditorToolbarModel::roleNames() const
{
    return {{LabelRole, "label"},       {IsSymbolRole, "isSymbol"}, {IsLitRole, "isLit"},
            {HelpTextRole, "helpText"}, {NameRole, "name"},         {EndsGroupRole, "endsGroup"}};
}

void EditorToolbarModel::press(int row)
{
    if (row < 0 || row >= rowCount())
        return;
    const EditorCommand command = buttons.at(std::size_t(row)).command();
    if (command.kind() == Kind::link)
        Q_EMIT linkRequested();
    else if (m_controller)
        m_controller->run(command);
}

void EditorToolbarModel::followFormatState()
{
    const EditorFormatState before = m_state;
    m_state = m_controller ? m_controller->formatState() : EditorFormatState();
    for (int row = 0; row < rowCount(); ++row) {
        const Button &button = buttons.at(std::size_t(row));
        if (isLit(button, before) != isLit(button, m_state))
            Q_EMIT dataChanged(index(row), index(row), {IsLitRole, HelpTextRole});
    }
}

void EditorToolbarModel::retranslate()
{
    Q_EMIT dataChanged(index(0), index(rowCount() - 1), {HelpTextRole, NameRole});
}
