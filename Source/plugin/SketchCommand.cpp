// The command "Start VANT": its guards, the exchange with the sketch application, and its alerts.
#include "Source/plugin/suite.h"
#include "Source/plugin/vantPlugin.h"
#include "Source/vntClientCom/vntClientCom.h"

namespace {

constexpr unsigned int kPort = 4910;
constexpr const char* kAddress = "127.0.0.1";

} // namespace

HostError vantPlugin::GoMenuItem(HostMessage* /*message*/)
{
    HostError result = 0;
    try {
        HostBoolean page_tiling = 0;
        result = present(document_view_suite).GetShowPageTiling(&page_tiling);
        if (page_tiling != 0 || getNonCollapsedFocusDocument() == nullptr) {
            showDialog(CFSTR("VANT information"), CFSTR("Unable to find document"));
            return result;
        }
        ProcessSerialNumber front{0, 0};
        GetFrontProcess(&front);
        CorrespondWithVANT();
        SetFrontProcess(&front);
    } catch (...) {
        showDialog(CFSTR("VANT information"), CFSTR("Unable to start VANT"));
    }
    return result;
}

void vantPlugin::CorrespondWithVANT()
{
    vnt::ClientCom link;
    vnt::ViewportInfo viewport(0, 0, 0, 0);
    vnt::ModelSpaceInfo model_space{vnt::Matrix(), vnt::Matrix()};

    CreateDrawingBoard(viewport);
    model_space = GetTranceformMatrix();
    const double tolerance = model_space.viewport_space_to_model_space_mapping_matrix.m00;

    AIDocumentViewHandle view = nullptr;
    present(document_view_suite).GetNthDocumentView(0, &view);
    const bool flag_5 = host_services::grid_flag_5(present(grid_suite), view);
    const bool flag_6 = host_services::grid_flag_6(present(grid_suite), view);
    if (flag_5 && flag_6)
        CreateGridSpace(model_space);
    else
        CreateAdequateGridSpace(model_space);

    const vnt::FigPrimInfo* const figure =
        link.summonVANT(viewport, model_space, vnt::COM_XML, kPort, kAddress);
    if (figure != nullptr)
        CreateStroke(*figure, tolerance);
    else
        showDialog(CFSTR("VANT Information"), CFSTR("Unable to start VANT"));
}

void vantPlugin::showDialog(CFStringRef text, CFStringRef explanation)
{
    constexpr std::int16_t kStop = 0;
    DialogRef alert = nullptr;
    CreateStandardAlert(kStop, text, explanation, nullptr, &alert);
    RunStandardAlert(alert, nullptr, nullptr);
}
