#pragma once

#include <QTranslator>

/// Has the dialogs that Qt brings along (files, printers) speak the language of the interface.
class DialogLanguage : public QObject
{
    Q_OBJECT

public:
    explicit DialogLanguage(QObject *parent = nullptr);

private:
    void follow();

    QTranslator m_polish; ///< English is what Qt has without one
};
