#include <Source/markup/parser.h>
#include <Source/vntClientCom/vntClientCom.h>

#include <cstdio>
#include <memory>
#include <string>

int main()
{
    parser document;
    const std::string text = "<vant><point x=\"1\" y=\"2.5\"/></vant>";
    document.feed(text.data(), text.size());
    const std::unique_ptr<tagrec> tree(document.root);
    const vnt::Point point = vnt::ClientCom().parsePoint(*tree->children.front()->children.front());
    std::printf("%g %g %g\n", point.x, point.y, point.z);
}
