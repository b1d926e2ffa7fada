// The smallest sketch application: waits for one drawing host, prints what it tells, and answers with a
// circle in the middle of its view.
//
// usage: smallest_peer [PORT]    (0: any free port; the one taken is printed)
#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

// The number of an attribute in the first element of that name. Enough for a document that was written
// without line breaks, entities or comments, as the CAD information is.
double attribute(const std::string& document, const std::string& element, const std::string& name)
{
    const std::size_t tag = document.find("<" + element);
    const std::size_t value = tag == std::string::npos ? tag : document.find(" " + name + "=\"", tag);
    return value == std::string::npos ? 0.0 : std::atof(document.c_str() + value + name.size() + 3);
}

int listen_on(unsigned int port)
{
    const int listening = socket(AF_INET, SOCK_STREAM, 0);
    const int on = 1;
    setsockopt(listening, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    sockaddr_in address{};
    socklen_t size = sizeof address;
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (bind(listening, reinterpret_cast<const sockaddr*>(&address), size) != 0 ||
        listen(listening, 1) != 0 ||
        getsockname(listening, reinterpret_cast<sockaddr*>(&address), &size) != 0)
        return -1;
    std::printf("listening on 127.0.0.1:%d\n", int{ntohs(address.sin_port)});
    std::fflush(stdout);
    return listening;
}

} // namespace

int main(int argc, char** argv)
{
    const int listening = listen_on(static_cast<unsigned int>(argc > 1 ? std::atoi(argv[1]) : 4910));
    if (listening < 0) {
        std::perror("smallest_peer: cannot listen");
        return EXIT_FAILURE;
    }
    const int host = accept(listening, nullptr, nullptr);

    std::string request; // one line: the CAD information document
    for (char c = 0; recv(host, &c, 1, 0) == 1 && c != '\n';)
        request += c;
    std::printf("%s\n", request.c_str());

    // The middle of the window, through the matrix from window to artwork.
    const std::string matrix = "viewport_space_to_model_space_mapping_matrix";
    const double x = attribute(request, "viewport_information", "width") / 2;
    const double y = attribute(request, "viewport_information", "height") / 2;
    const double model_x = attribute(request, matrix, "m00") * x + attribute(request, matrix, "m01") * y +
                           attribute(request, matrix, "m03");
    const double model_y = attribute(request, matrix, "m10") * x + attribute(request, matrix, "m11") * y +
                           attribute(request, matrix, "m13");

    char answer[400]; // one line again, and its line feed
    const int size =
        std::snprintf(answer, sizeof answer,
                      "<vant><shape><circle><center x=\"%.17g\" y=\"%.17g\"/><radius>100</radius>"
                      "<angle start=\"0\" end=\"6.283185307179586\"/></circle></shape></vant>\n",
                      model_x, model_y);
    if (send(host, answer, static_cast<std::size_t>(size), 0) != size)
        return EXIT_FAILURE;
    char rest = 0; // the host closes when it has read the answer
    while (recv(host, &rest, 1, 0) == 1) {
    }
    close(host);
    close(listening);
    return EXIT_SUCCESS;
}
