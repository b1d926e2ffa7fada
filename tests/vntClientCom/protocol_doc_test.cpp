// The examples of docs/protocol.md are what the link writes and accepts.
#include "Source/vntClientCom/vntClientCom.h"

#include "tests/support/describe.h"
#include "tests/support/descriptors.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <vector>

namespace {

struct TestLink : vnt::ClientCom {
    using vnt::ClientCom::com_type;
    using vnt::ClientCom::data_socket;
    using vnt::ClientCom::figure;
};

// The lines of the document that stand in ```xml blocks.
std::vector<std::string> examples()
{
    std::ifstream document(VNT_PROTOCOL_DOCUMENT);
    std::vector<std::string> found;
    bool inside = false;
    for (std::string line; std::getline(document, line);) {
        if (line.rfind("```", 0) == 0)
            inside = line == "```xml";
        else if (inside)
            found.push_back(line);
    }
    return found;
}

class ProtocolDocument : public testing::Test {
protected:
    support::ParkedInput parked;
    support::SocketPair pair;
    TestLink link;
    std::vector<std::string> lines = examples();

    void SetUp() override
    {
        link.data_socket = pair.link.release();
        link.com_type = vnt::COM_XML;
        ASSERT_EQ(lines.size(), 3u);
    }

    std::string figure_of(const std::string& answer)
    {
        support::send_all(pair.peer.get(), answer + "\n");
        return link.recieve_figure_primitive_info() == 1 ? support::describe(link.figure) : "refused";
    }
};

TEST_F(ProtocolDocument, ShowsTheCadInformationThatTheLinkSends)
{
    vnt::ModelSpaceInfo info{vnt::Matrix(), vnt::Matrix()};
    info.viewport_space_to_model_space_mapping_matrix.m11 = -1;
    info.viewport_space_to_model_space_mapping_matrix.m13 = 768;
    vnt::Matrix& grid = info.unit_grid_space_to_model_space_mapping_matrix;
    grid.m00 = grid.m22 = 50;
    grid.m11 = -50;
    info.derivational_scale_factor = 4;
    link.send_CAD_info(vnt::ViewportInfo(0, 22, 1024, 768), info);
    EXPECT_EQ(support::receive_waiting(pair.peer.get()), lines[0] + "\n");
}

TEST_F(ProtocolDocument, ShowsAFigureThatTheLinkAccepts)
{
    EXPECT_EQ(figure_of(lines[1]), "[line(0,0,0 100,50,0) circular_arc(10,10,0 r=25 0..1.5707963267948966) "
                                   "closed(0,0,0 5,9,0 9,5,0 0,0,0)]");
}

TEST_F(ProtocolDocument, ShowsAFigureOfSeveralStrokesThatTheLinkAccepts)
{
    EXPECT_EQ(figure_of(lines[2]),
              "[circle(300,200,0 r=100 0..6.2831853071795862)]"
              "[elliptic_arc(300,200,0 r=150,75 0.5..2.5 m00=0.86599999999999999 m01=-0.5 m10=0.5 "
              "m11=0.86599999999999999)]"
              "[open(0,0,0 10,20,0 30,20,0 40,0,0)]");
}

} // namespace
