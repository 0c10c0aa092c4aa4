// The main window: owner of the run-time state, start-up, the three actions, the menus and the end of the
// tool.
//
// Everything runs on one thread. A run dispatches window events, so handlers can run inside one another: that
// is how Cancel Update reaches a run. The window counts the handlers under way and releases its state when
// the last one has ended. An update during which Select DB was pressed has lost its target: it ends where it
// is and leaves buttons, boxes and the new target to whatever came after it.
#pragma once

#include <QMainWindow>
#include <functional>

#include "catalogue/interface_state.h"
#include "ui/error_trap.h"
#include "ui/range_dialog.h"
#include "ui/table_list_boxes.h"
#include "ui/window_layout.h"
#include "ui/window_services_qt.h"

namespace ui {

class fInterface : public QMainWindow {
    Q_OBJECT
  public:
    /// Lays out the window, hidden.
    fInterface();
    ~fInterface() override;

    /// Start-up: site, engine, status panels, caption, catalogue, table list. False when the site gives no
    /// engine: the tool ends. Errors propagate.
    bool Form_Load();

    const catalogue::InterfaceState& State() const { return mState; }
    QtWindowServices& Services() { return mServices; }

    /// Where the errors of the window's handlers are kept.
    ErrorTrap& Trap() { return mTrap; }

  protected:
    void changeEvent(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

  private:
    void Connect();
    void Handle(const std::function<void()>& handler);

    void btnAction_Click(int Index);
    void SelectDatabase();
    void CloseTargetIgnoringErrors();
    void OpenTableList();
    void Update();
    void ExportTickedTables();
    void FinishUpdate();
    void ExportTable(std::int16_t box);
    void OfferCancel();
    void CancelUpdate();
    void mnuEnforceReferentialIntegrity_Click(bool ticked);

    void ResetTableList();
    void OpenInvoiceFile();
    void Form_Unload();

    catalogue::InterfaceState mState;
    ErrorTrap mTrap;
    const InterfaceControls mControls;
    TableListBoxes mTables;
    QtWindowServices mServices;
    QtRangeDialog mRangeDialog;
    int mHandlersRunning = 0;
    int mSelections = 0;  // how often Select DB was pressed
    bool mIsClosed = false;
};

}  // namespace ui
