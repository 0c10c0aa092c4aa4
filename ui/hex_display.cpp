#include "ui/hex_display.h"

#include <QFontDatabase>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QVBoxLayout>

using namespace Qt::Literals::StringLiterals;

namespace ui {

frmHexDisplay::frmHexDisplay(const QString& text, QWidget* parent) : QDialog(parent) {
    constexpr int LineLength = 76;  // characters: a full line of the dump and a little air
    constexpr int VisibleLines = 24;
    setObjectName(u"frmHexDisplay"_s);
    setWindowTitle(u"Hex Variable Display"_s);

    auto* const dump = new QPlainTextEdit(text, this);
    dump->setObjectName(u"txtHex"_s);
    dump->setAccessibleName(dump->objectName());
    dump->setReadOnly(true);
    dump->setLineWrapMode(QPlainTextEdit::NoWrap);
    dump->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    const QFontMetrics metrics(dump->font());
    const int edges = 2 * dump->frameWidth() + dump->verticalScrollBar()->sizeHint().width();
    dump->setMinimumSize(metrics.horizontalAdvance(u'0') * LineLength + edges,
                         metrics.lineSpacing() * VisibleLines + edges);

    auto* const cancel = new QPushButton(u"&Cancel"_s, this);
    cancel->setObjectName(u"b_Cancel"_s);
    cancel->setDefault(true);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);

    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(dump);
    layout->addWidget(cancel, 0, Qt::AlignRight);
}

}  // namespace ui
