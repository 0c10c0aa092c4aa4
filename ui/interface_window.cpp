#include "ui/interface_window.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>
#include <algorithm>

#include "catalogue/metadata_catalogue.h"
#include "catalogue/target_builder.h"
#include "engine/business_basic.h"
#include "engine/site_configuration.h"
#include "export/export_run.h"
#include "platform/dao/errors.h"
#include "platform/error.h"
#include "ui/create_database_dialog.h"
#include "ui/readable_colours.h"
#include "ui/status_panels.h"
#include "ui/window_texts.h"

using namespace Qt::Literals::StringLiterals;

namespace ui {

namespace {

constexpr int SelectDatabaseButton = 0;
constexpr int UpdateButton = 1;
constexpr int CancelUpdateButton = 2;

constexpr std::int16_t BoxCount = catalogue::TableList::BoxCount;

bool IsBlank(const QString& text) {
    return std::all_of(text.begin(), text.end(), [](QChar character) { return character == u' '; });
}

/// The radix-40 alphabet of this application's files begins with these four.
void SetCodeCharacters() {
    constexpr std::int32_t ReplaceCodeCharacters = 10;
    engine::StmaValue zero = 0;
    engine::StmaValue characters = engine::ByteString(" ,-.");
    engine::StmaValue unused;
    engine::gEngine->Stma(ReplaceCodeCharacters, zero, characters, unused, unused, unused);
}

}  // namespace

fInterface::fInterface()
    : mControls(LayOutInterface(*this)),
      mTables(mControls.x_SelectedTable),
      mServices(*this, mControls, mTrap),
      mRangeDialog(mServices, mTrap) {
    setPalette(ReadableDisabledTexts(QApplication::palette()));
    Connect();
}

fInterface::~fInterface() {
    Form_Unload();
}

void fInterface::Connect() {
    for (int i = 0; i < static_cast<int>(mControls.btnAction.size()); ++i) {
        connect(mControls.btnAction[static_cast<std::size_t>(i)], &QPushButton::clicked, this,
                [this, i] { Handle([this, i] { btnAction_Click(i); }); });
    }
    for (std::int16_t i = 0; i < BoxCount; ++i) {
        connect(mControls.x_SelectedTable[static_cast<std::size_t>(i)], &QCheckBox::toggled, this, [this, i] {
            Handle(
                [this, i] { exporting::x_SelectedTable_Click(mState, mTables, mServices, mRangeDialog, i); });
        });
    }
    connect(mControls.mnuEnforceReferentialIntegrity, &QAction::toggled, this,
            &fInterface::mnuEnforceReferentialIntegrity_Click);
    connect(mControls.mnuExit, &QAction::triggered, this, &QWidget::close);
}

/// A window that is closed while a handler runs is unloaded when the outermost one has ended. No handler runs
/// in the middle of work on the target database: what is not input, such as a screen reader's press of a
/// button, comes through there and has to wait.
void fInterface::Handle(const std::function<void()>& handler) {
    constexpr int Later = 20;  // milliseconds
    if (mServices.IsBreathing()) {
        QTimer::singleShot(Later, this, [this, handler] { Handle(handler); });
        return;
    }
    ++mHandlersRunning;
    mTrap.Run(handler);
    --mHandlersRunning;
    if (mIsClosed && mHandlersRunning == 0) Form_Unload();
}

bool fInterface::Form_Load() {
    engine::LoadSiteConfiguration(false, mServices);
    if (!engine::gEngine) return false;
    mControls.sb1->ShowSite(SitePanelTexts(*engine::gSystem));
    setWindowTitle(windowTitle() + u"     " + VersionText());
    repaint();
    mServices.EnableAction(UpdateButton, false);
    mServices.EnableAction(CancelUpdateButton, false);
    ResetTableList();
    catalogue::StartCatalogue(mState, mTables);
    SetCodeCharacters();
    OpenInvoiceFile();
    return true;
}

void fInterface::ResetTableList() {
    for (int box = 0; box < BoxCount; ++box) {
        mTables.SetVisible(box, false);
        mTables.SetEnabled(box, false);
        mTables.SetTicked(box, false);
    }
}

void fInterface::OpenInvoiceFile() {
    constexpr std::int32_t OrdinaryInvoiceLength = 512;
    const auto invoices = catalogue::OpenLogicalFile("SINVOI");
    if (!invoices) throw platform::Error(platform::ObjectNotSet);
    if (invoices->RecordLength > OrdinaryInvoiceLength) mState.InvoiceRecordsOver512 = true;
}

void fInterface::btnAction_Click(int Index) {
    switch (Index) {
        case SelectDatabaseButton:
            return SelectDatabase();
        case UpdateButton:
            return Update();
        case CancelUpdateButton:
            return CancelUpdate();
        default:
            return;
    }
}

void fInterface::SelectDatabase() {
    ++mSelections;
    mServices.EnableAction(SelectDatabaseButton, false);
    CloseTargetIgnoringErrors();
    mControls.txtDataBase->setText(CreateDatabaseDialog(mServices));
    if (!IsBlank(mControls.txtDataBase->text())) {
        repaint();
        mServices.ShowHourglass(true);
        catalogue::BuildTargetDatabase(mState, mControls.txtDataBase->text().toStdString());
        mState.TargetDatabase->SetPause([this] { mServices.Breathe(); });
        OpenTableList();
        mServices.EnableAction(UpdateButton, true);
        mServices.ShowHourglass(false);
    }
    mServices.EnableAction(SelectDatabaseButton, true);
    catalogue::ResetRangeOverrides(mState);
}

void fInterface::CloseTargetIgnoringErrors() {
    if (!mState.TargetDatabase) return;
    try {
        mState.TargetDatabase->Close();
    } catch (const platform::Error&) {
        // There may be none open: the update before has closed it.
    }
}

void fInterface::OpenTableList() {
    for (int box = 0; box < BoxCount; ++box) {
        if (mTables.Caption(box).empty()) continue;
        mTables.SetVisible(box, true);
        mTables.SetEnabled(box, true);
        mTables.SetTicked(box, false);
    }
}

/// When Select DB was pressed meanwhile, the former target is closed: the update ends where it is. The flag
/// is set again for the run further out, if this update was started in the middle of one.
void fInterface::Update() {
    const int selection = mSelections;
    mState.CancelRequested = false;
    mServices.EnableAction(SelectDatabaseButton, false);
    mServices.EnableAction(UpdateButton, false);
    try {
        ExportTickedTables();
    } catch (const platform::Error& error) {
        if (selection == mSelections || error.Number != dao::ObjectInvalid) throw;
    }
    if (selection == mSelections) FinishUpdate();
    if (mHandlersRunning > 1) mState.CancelRequested = true;
}

void fInterface::FinishUpdate() {
    OfferCancel();
    if (!mState.TargetDatabase) throw platform::Error(platform::ObjectNotSet);
    mState.TargetDatabase->Close();
    mServices.EnableAction(SelectDatabaseButton, true);
}

void fInterface::ExportTickedTables() {
    const int selection = mSelections;
    OfferCancel();
    for (std::int16_t box = 0; box < BoxCount; ++box) {
        if (mTables.Ticked(box)) ExportTable(box);
        if (selection != mSelections) return;
        mTables.SetEnabled(box, false);
        catalogue::EmptyTableFiles(mState);
    }
}

/// Each completed table disables the button, but the update goes on.
void fInterface::OfferCancel() {
    mServices.EnableAction(CancelUpdateButton, !mState.CancelRequested);
}

void fInterface::ExportTable(std::int16_t box) {
    OfferCancel();
    catalogue::EmptyTableFiles(mState);
    catalogue::OpenFiles(mState, mTables, mServices, box);
    catalogue::BuildCollection(mState, mTables, box);
    exporting::AddData(mState, mTables, mServices, box);
    mServices.RenderProgress();
    mTables.SetTicked(box, false);
}

void fInterface::CancelUpdate() {
    mServices.EnableAction(SelectDatabaseButton, true);
    mServices.EnableAction(CancelUpdateButton, false);
    mState.CancelRequested = true;
}

void fInterface::mnuEnforceReferentialIntegrity_Click(bool ticked) {
    mState.EnforceReferentialIntegrity = ticked;
}

/// The desktop goes from light to dark, say.
void fInterface::changeEvent(QEvent* event) {
    if (event->type() == QEvent::PaletteChange) setPalette(ReadableDisabledTexts(QApplication::palette()));
    QMainWindow::changeEvent(event);
}

/// A run under way stops as if cancelled. The report of an error writes to the target, outside any handler,
/// and has the window go on breathing: then what it works on stays until the tool ends.
void fInterface::closeEvent(QCloseEvent* event) {
    event->accept();
    mIsClosed = true;
    mState.CancelRequested = true;
    if (mHandlersRunning == 0 && !mServices.IsBreathing()) Form_Unload();
}

/// Releases everything; a database is closed with its last handle. The engine speaks to this window, so it
/// goes too.
void fInterface::Form_Unload() {
    mState.CatalogueDatabase.reset();
    mState.TargetDatabase.reset();
    mState.TargetRecordset.reset();
    mState.FieldList.clear();
    mState.FileDefinitionsRecordset.reset();
    mState.LogicalMapRecordset.reset();
    mState.IndexDefinitionRecordset.reset();
    mState.LogicalIndexRecordset.reset();
    mState.RelationsRecordset.reset();
    catalogue::EmptyTableFiles(mState);
    engine::gEngine.reset();
    QCoreApplication::quit();
}

}  // namespace ui
