// window_screenshots FOLDER [POINTS]: pictures of the window and its dialogs in their states, on a made-up
// site, into FOLDER; POINTS sets another font size. Needs no display with QT_QPA_PLATFORM=offscreen; crisp
// pictures at other scales come with QT_SCALE_FACTOR. What tells of the machine it runs on is replaced.

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QStyle>
#include <QTest>
#include <QTimer>
#include <cstdio>

#include "engine/business_basic.h"
#include "tools/window_driver/made_up_site.h"
#include "tools/window_driver/window_driver.h"
#include "ui/interface_window.h"
#include "ui/status_text_box.h"

using namespace Qt::Literals::StringLiterals;

namespace {

using driver::ModalRobot;
using driver::WindowDriver;

constexpr std::int64_t SiteRecords = 60'000;

class Photographer {
  public:
    explicit Photographer(const QString& folder) : mFolder(folder) {}

    /// One session of the operator: started, ready with some tables ticked, in the middle of an update, done.
    void Session(const QString& suffix);

    /// What the tool shows where it cannot work.
    void Messages();

  private:
    void Start();
    void Ready();
    void Updating();
    void SaveDialog();
    void RangeDialog();
    void HexDisplay();
    void Save(const QString& name, const QPixmap& picture) const;

    /// A dialog over what it stands above, below pixels under the middle.
    static QPixmap Above(QPixmap ground, QWidget& dialog, int below);

    const QString mFolder;
    const driver::MadeUpSite mSite{SiteRecords};
    QString mSuffix;
    ModalRobot mRobot;
    std::unique_ptr<ui::fInterface> mWindow;
    std::unique_ptr<WindowDriver> mHands;
};

void Photographer::Session(const QString& suffix) {
    mSuffix = suffix;
    Start();
    Save(u"idle"_s, mWindow->grab());
    Ready();
    Save(u"ready"_s, mWindow->grab());
    RangeDialog();
    HexDisplay();
    Updating();
    Save(u"done"_s, mWindow->grab());
    mWindow->close();
    mHands.reset();
    mWindow.reset();
}

void Photographer::Start() {
    mWindow = std::make_unique<ui::fInterface>();
    if (!mWindow->Form_Load()) throw std::runtime_error("the made-up site does not start");
    mHands = std::make_unique<WindowDriver>(*mWindow, mRobot);
    mHands->Find<QLabel>(u"sb1(1)"_s).setText(u"Client :COUNTER1"_s);
    mWindow->show();
    mWindow->activateWindow();
    if (!QTest::qWaitForWindowActive(mWindow.get())) throw std::runtime_error("the window does not come up");
}

void Photographer::Ready() {
    SaveDialog();
    mHands->Find<QLineEdit>(u"txtDataBase"_s).setText(u"C:\\My Documents\\MyData.mdb"_s);
    for (const QString& table :
         {u"CUSTOMERS"_s, u"INVOICES"_s, u"INVOICE_HISTORY"_s, u"INVOICE_HISTORY_DETAIL"_s, u"PARTS"_s}) {
        mHands->Click(table);
    }
    QApplication::processEvents();
}

/// The folder shown is an operator's, the file is made in the site's.
void Photographer::SaveDialog() {
    mRobot.Expect([this](QWidget& dialog) {
        qobject_cast<QFileDialog*>(&dialog)->setSidebarUrls({});
        auto* const folder = dialog.findChild<QComboBox*>(u"lookInCombo"_s);
        folder->setItemText(folder->currentIndex(), u"Documents"_s);
        QApplication::processEvents();
        Save(u"choose"_s, dialog.grab());
        ModalRobot::ChooseFile(mSite.Database(u"MyData%1.mdb"_s.arg(mSuffix)))(dialog);
    });
    mHands->Press(WindowDriver::SelectDb);
}

void Photographer::RangeDialog() {
    mRobot.Expect([this](QWidget& dialog) {
        mRobot.OnMessage = [&](QWidget& message) {
            Save(u"range"_s, Above(Above(mWindow->grab(), dialog, 0), message, dialog.height()));
        };
        auto* const start = dialog.findChild<QLineEdit*>(u"e_Start"_s);
        QTest::keyClicks(start, u"0"_s);
        QTest::keyClick(start, Qt::Key_Tab);
        mRobot.OnMessage = [](QWidget&) {};
        dialog.activateWindow();
        QTest::mouseClick(dialog.findChild<QPushButton*>(u"b_Reset"_s), Qt::LeftButton);
        start->setFocus();
        QTest::keyClicks(start, u"1"_s);
        ModalRobot::PressOk(dialog);
    });
    mHands->Click(u"VENDORS"_s);
}

void Photographer::HexDisplay() {
    mRobot.Expect([this](QWidget& dialog) {
        Save(u"hex"_s, dialog.grab());
        ModalRobot::PressEscape(dialog);
    });
    engine::ByteString record =
        "\x01\x2F"
        "A made-up customer of the sample site";
    for (int byte = 0; byte < 256; ++byte) record += static_cast<char>(byte);
    engine::gEngine->H(record);
}

/// The picture is taken when the bar is well on its way; the run goes on meanwhile.
void Photographer::Updating() {
    constexpr double WellOnItsWay = 0.6;
    QTimer watch;
    QObject::connect(&watch, &QTimer::timeout, mWindow.get(), [&] {
        if (mHands->Find<ui::StatusTextBox>(u"txtStatus"_s).Share() < WellOnItsWay) return;
        Save(u"updating"_s, mWindow->grab());
        watch.stop();
    });
    watch.start(0);
    mHands->Press(WindowDriver::Update);
}

void Photographer::Messages() {
    mSuffix.clear();
    mRobot.OnMessage = [this](QWidget& message) { Save(u"no-site"_s, message.grab()); };
    qputenv("TMPDIR", "/tmp");
    if (ui::fInterface().Form_Load()) throw std::runtime_error("there is a site in /tmp");
    mRobot.OnMessage = [](QWidget&) {};
}

QPixmap Photographer::Above(QPixmap ground, QWidget& dialog, int below) {
    const QPixmap picture = dialog.grab();
    const QSizeF size = picture.deviceIndependentSize();
    const QRectF area(QPointF(0, 0), ground.deviceIndependentSize());
    const QRectF place(area.center() - QPointF(size.width() / 2, size.height() / 2 - below), size);
    QPainter painter(&ground);
    painter.drawPixmap(place.topLeft(), picture);
    painter.setPen(dialog.palette().color(QPalette::Dark));
    painter.drawRect(place);
    return ground;
}

void Photographer::Save(const QString& name, const QPixmap& picture) const {
    const QString path = QDir(mFolder).filePath(name + mSuffix + u".png"_s);
    if (!picture.save(path)) throw std::runtime_error("cannot write " + path.toStdString());
}

void UseFont(double points) {
    QFont font = QApplication::font();
    font.setPointSizeF(points);
    QApplication::setFont(font);
}

}  // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    if (argc < 2 || argc > 3) {
        std::fprintf(stderr, "usage: window_screenshots FOLDER [POINTS]\n");
        return 2;
    }
    if (argc == 3) UseFont(QString::fromLocal8Bit(argv[2]).toDouble());
    try {
        Photographer photographer(QString::fromLocal8Bit(argv[1]));
        photographer.Session(QString());
        QApplication::setPalette(QPalette(QColor(45, 45, 48)));
        photographer.Session(u"-dark"_s);
        QApplication::setPalette(QPalette());
        photographer.Messages();
        return 0;
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "window_screenshots: %s\n", failure.what());
        return 1;
    }
}
