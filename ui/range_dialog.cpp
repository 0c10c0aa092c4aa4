#include "ui/range_dialog.h"

#include <QGridLayout>
#include <QLabel>
#include <QPushButton>

#include "ui/digit_box.h"
#include "ui/exec_modal.h"
#include "ui/window_texts.h"

using namespace Qt::Literals::StringLiterals;

namespace ui {

using exporting::RangeBox;

namespace {

enum Row { FileRow, FieldRow, StartRow, EndRow, ButtonRow };
enum Column { CaptionColumn, BoxColumn, ButtonColumn };
constexpr int ToTheRight = -1;  // a cell that spans all columns from its own on

QLabel* NewLabel(const QString& name, const std::string& text, QWidget* parent) {
    auto* const label = new QLabel(FromUtf8(text), parent);
    label->setObjectName(name);
    label->setTextFormat(Qt::PlainText);
    return label;
}

}  // namespace

fRange::fRange(dao::Recordset& row, const exporting::RangeTexts& texts, platform::WindowServices& services,
               ErrorTrap& trap, QWidget* parent)
    : QDialog(parent),
      mRow(row),
      mTexts(texts),
      mServices(services),
      mTrap(trap),
      e_Start(new DigitBox(u"e_Start"_s, this)),
      e_End(new DigitBox(u"e_End"_s, this)),
      b_Reset(new QPushButton(u"&Reset"_s, this)),
      b_OK(new QPushButton(u"&OK"_s, this)) {
    setObjectName(u"fRange"_s);
    setWindowTitle(u"Range Selection"_s);
    auto* const grid = new QGridLayout(this);
    AddLabels(*grid);
    AddBoxes(*grid);
    AddButtons(*grid);
    Connect();
    ShowCatalogueValues();
    e_Start->setFocus();
}

void fRange::AddLabels(QGridLayout& grid) {
    QLabel* const file = NewLabel(u"lFileDescription"_s, mTexts.FileDescription, this);
    QFont bold = file->font();
    bold.setBold(true);
    file->setFont(bold);
    grid.addWidget(file, FileRow, CaptionColumn, 1, ToTheRight);
    QLabel* const field = NewLabel(u"lFieldDescription"_s, mTexts.FieldDescription, this);
    grid.addWidget(field, FieldRow, CaptionColumn, 1, ToTheRight);
}

void fRange::AddBoxes(QGridLayout& grid) {
    grid.addWidget(new QLabel(u"Start"_s, this), StartRow, CaptionColumn);
    grid.addWidget(e_Start, StartRow, BoxColumn, 1, ToTheRight);
    grid.addWidget(new QLabel(u"End"_s, this), EndRow, CaptionColumn);
    grid.addWidget(e_End, EndRow, BoxColumn, 1, ToTheRight);
}

void fRange::AddButtons(QGridLayout& grid) {
    b_Reset->setObjectName(u"b_Reset"_s);
    b_OK->setObjectName(u"b_OK"_s);
    b_OK->setDefault(true);
    grid.addWidget(b_Reset, ButtonRow, BoxColumn);
    grid.addWidget(b_OK, ButtonRow, ButtonColumn);
}

void fRange::Connect() {
    connect(e_Start, &DigitBox::Left, this, [this] { Leave(RangeBox::Start); });
    connect(e_End, &DigitBox::Left, this, [this] { Leave(RangeBox::End); });
    ConnectButton(*b_Reset, &fRange::ShowCatalogueValues);
    ConnectButton(*b_OK, &fRange::Close);
}

/// A button acts only when it gets the focus: the box that loses it may object. Pressed by the mouse, the
/// button has the focus before it is down; by key, it must ask for it.
void fRange::ConnectButton(QPushButton& button, void (fRange::*action)()) {
    connect(&button, &QPushButton::pressed, this, [this, &button] {
        if (mSwallowsPress) button.setDown(false);
        mSwallowsPress = false;
    });
    connect(&button, &QPushButton::clicked, this, [this, &button, action] {
        button.setFocus();
        if (focusWidget() == &button) (this->*action)();
    });
}

void fRange::ShowCatalogueValues() {
    e_End->ShowValue(FromUtf8(mTexts.End));
    e_Start->ShowValue(FromUtf8(mTexts.Start));
}

void fRange::Leave(RangeBox box) {
    if (mIgnoresLeaving) return;
    mSwallowsPress = false;
    mTrap.Run([this, box] {
        const auto objection =
            exporting::LeaveRangeBox(mRow, box, e_Start->text().toStdString(), e_End->text().toStdString());
        if (objection) Object(*objection);
    });
}

void fRange::Object(const exporting::RangeObjection& objection) {
    mIgnoresLeaving = true;
    platform::Message message;
    message.Text = objection.Message;
    mServices.ShowMessage(message);
    BoxOf(objection.Focus).setFocus();
    mIgnoresLeaving = false;
    mSwallowsPress = true;
}

DigitBox& fRange::BoxOf(RangeBox box) const {
    return box == RangeBox::Start ? *e_Start : *e_End;
}

void fRange::reject() {
    if (e_Start == focusWidget()) {
        Leave(RangeBox::Start);
    } else if (e_End == focusWidget()) {
        Leave(RangeBox::End);
    }
    QDialog::reject();
}

void fRange::done(int result) {
    mIgnoresLeaving = true;
    QDialog::done(result);
}

void QtRangeDialog::ShowModal(dao::Recordset& row, const exporting::RangeTexts& texts) {
    fRange dialog(row, texts, mServices, mTrap, mServices.DialogParent());
    ExecModal(dialog);
    mTrap.RethrowIfTripped();
}

}  // namespace ui
