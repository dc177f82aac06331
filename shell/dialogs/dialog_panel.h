// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "shell/dialogs/dialog.h"

#include <QVector>
#include <QWidget>

class QBoxLayout;
class QFrame;
class QKeyEvent;
class QLabel;
class QPlainTextEdit;
class QPushButton;

/**
 * A dialog on the screen: covers its parent, dims it and shows an opaque panel that can be read
 * from a sofa. It takes no focus; whoever shows it hands it the keys. GUI thread.
 */
class DialogPanel : public QWidget
{
    Q_OBJECT

public:
    /** Fills `parent`, whose height gives the measures. */
    DialogPanel(const Dialog &dialog, QWidget *parent);

    /** Acts on a key press. Of the keys that are the box's, a prompt takes the text. */
    void pressKey(const QKeyEvent &event);

    /** What a prompt holds now. */
    QString enteredText() const { return m_entered; }

signals:
    /** The viewer has decided. */
    void decided(bool accepted);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void buildText(const Dialog &dialog, QBoxLayout *layout);
    void buildField(QBoxLayout *layout);
    void buildCharacters(QBoxLayout *layout);
    void buildButtons(Dialog::Kind kind, QBoxLayout *layout);
    QBoxLayout *addRow(QBoxLayout *layout);
    QPushButton *addButton(const QString &label, QBoxLayout *row);
    void moveRow(int step);
    void select(int row, int column);
    void scroll(int pages);
    void enter(const QString &text);
    void erase();
    void shift();
    void showEntered();

    int m_unit; ///< height of the text, px
    QString m_entered;
    bool m_shifted = false;
    QFrame *m_panel = nullptr;
    QPlainTextEdit *m_text = nullptr;
    QLabel *m_field = nullptr;              ///< only in a prompt
    QVector<QVector<QPushButton *>> m_rows; ///< as they lie on the screen
    int m_row = 0;
    int m_column = 0;
};
