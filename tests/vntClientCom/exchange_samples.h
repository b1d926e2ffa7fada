// What the two sides of an exchange say in tests, and a link to say it to.
#pragma once

#include "Source/vntClientCom/vntClientCom.h"

#include "tests/support/describe.h"
#include "tests/support/descriptors.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <thread>

namespace exchange_samples {

struct TestLink : vnt::ClientCom {
    using vnt::ClientCom::com_type;
    using vnt::ClientCom::data_socket;
    using vnt::ClientCom::figure;

    TestLink() = default;
    explicit TestLink(int socket, vnt::ComType type = vnt::COM_XML)
    {
        data_socket = socket;
        com_type = type;
    }
};

inline const std::string kIdentityAttributes =
    R"( m00="1" m01="0" m02="0" m03="0" m10="0" m11="1" m12="0" m13="0")"
    R"( m20="0" m21="0" m22="1" m23="0" m30="0" m31="0" m32="0" m33="1")";

// The CAD information document of those parts, as a sketch application receives it.
inline std::string cad_document(const std::string& viewport, const std::string& view_matrix,
                                const std::string& grid_matrix, const std::string& factor)
{
    return R"(<?xml version="1.0" encoding="UTF-8" standalone="no"?><vant><viewport_information)" + viewport +
           "/><model_space_information><viewport_space_to_model_space_mapping_matrix" + view_matrix +
           "/><snapping_information><unit_grid_space_to_model_space_mapping_matrix" + grid_matrix +
           "/><derivational_scale_factor>" + factor +
           "</derivational_scale_factor></snapping_information></model_space_information></vant>\n";
}

inline const std::string kExampleDocument =
    cad_document(R"( height="768" width="1024" x="0" y="22")", kIdentityAttributes, kIdentityAttributes, "1");

inline vnt::ModelSpaceInfo model_space(std::int32_t factor = 1)
{
    vnt::ModelSpaceInfo info{vnt::Matrix(), vnt::Matrix()};
    info.derivational_scale_factor = factor;
    return info;
}

inline const vnt::ViewportInfo kViewport(0, 22, 1024, 768);

inline const std::string kExampleAnswer =
    R"(<?xml version="1.0" encoding="UTF-8" standalone="no"?><vant><shape>)"
    R"(<line><start x="0" y="0" z="0"/><end x="100" y="50" z="0"/></line>)"
    R"(<circular_arc><center x="10" y="10" z="0"/><radius>25</radius><angle start="0" end="1.5707963267948966"/>)"
    R"(<posture m00="1" m11="1" m22="1" m33="1"/></circular_arc>)"
    R"(<closed_free_curve><bezier_curve><control_point x="0" y="0" z="0"/><control_point x="5" y="9" z="0"/>)"
    R"(<control_point x="9" y="5" z="0"/><control_point x="0" y="0" z="0"/></bezier_curve></closed_free_curve>)"
    R"(</shape></vant>)";
inline const std::string kExampleFigure =
    "[line(0,0,0 100,50,0) circular_arc(10,10,0 r=25 0..1.5707963267948966) "
    "closed(0,0,0 5,9,0 9,5,0 0,0,0)]";

// On standard error.
inline const std::string kInvalid = "vntClientCom( 194 ) : invalid date\n";
inline const std::string kIncomplete = "vntClientCom( 203 ) : can't accept\n";

struct Outcome {
    int result;
    std::string figure;
    std::string problems; // on standard error
    bool connection_open;
};

// What a link makes of bytes that its peer sends.
inline Outcome receive(const std::string& bytes, vnt::ComType type = vnt::COM_XML)
{
    support::ParkedInput parked;
    support::SocketPair pair;
    TestLink link(pair.link.release(), type);
    const int number = link.data_socket;
    std::thread peer([&] { support::send_all(pair.peer.get(), bytes); });
    testing::internal::CaptureStderr();
    const int result = link.recieve_figure_primitive_info();
    const bool still_open = support::is_open(number);
    const std::string problems = testing::internal::GetCapturedStderr();
    peer.join();
    return {result, support::describe(link.figure), problems, still_open};
}

} // namespace exchange_samples
