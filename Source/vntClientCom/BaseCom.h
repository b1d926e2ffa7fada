// The byte transport under the link: one IPv4 TCP stream, opened as a client or as a server for one peer, and
// two framings on it. Everything blocks, on the caller's thread.
//
// Shapes: a line is the message's bytes and one line feed (0x0A), which the message must not contain; a block
//         is its length in 4 bytes, unsigned, most significant first, and then that many bytes.
// Owner:  a BaseCom owns both descriptors, and closes whatever numbers stand in its fields.
// Errors: 1 for success and 0 for failure; nothing is reported, and what cannot be sent is not noticed. A
//         peer that has closed never raises SIGPIPE, and a send or receive that a signal interrupts is
//         repeated.
// When:   reading waits as long as nothing arrives, without limit.
#pragma once

#include <sstream>
#include <string>

class BaseCom {
public:
    BaseCom() = default;
    BaseCom(const BaseCom&) = delete;
    BaseCom& operator=(const BaseCom&) = delete;

    // Deliberate: closes both descriptors whatever they hold: a second time, and 0 where nothing ever
    // listened. Kept by BaseComEnd.KeepsClosingBothDescriptors. Depends on it: whoever runs a link, and parks
    // /dev/null on 0.
    virtual ~BaseCom();

    // Connects to a dotted-quad address; the port is its low 16 bits. A failed socket is closed.
    int connect_server(unsigned int port, const char* address);

    // Listens on every address of the machine and accepts one peer, then stops listening.
    int start_server(unsigned int port);

    // Whether input is there, waiting for it 100 microseconds at most. Deliberate spelling.
    //
    // Deliberate: the result of the poll itself is not examined, so that a descriptor that cannot be polled
    // counts as ready. Kept by BaseComPoll.KeepsABadDescriptorReady. Depends on it: reads, which end at once
    // on such a one.
    int check_recievable();

    // Whether output would be taken, without waiting.
    int check_sendable();

    // Sends a line, in two pieces: the message, then its line feed. A partial send is not continued.
    BaseCom& operator<<(const std::string& message);

    // Appends the next line to into, without its line feed. Never takes a byte behind the line feed from the
    // socket. A receive that fails ends the line where it is.
    //
    // Deliberate: a peer's orderly close does not end a line; the reader goes on waiting.
    // Kept by BaseComEnd.KeepsWaitingForALineAfterAnOrderlyClose. Depends on it: nothing; programs watch for
    // it.
    void operator>>(std::stringstream& into);

    // Sends the stream's whole content as a block. Partial sends are not continued.
    void send_data(const std::stringstream& block);

    // Replaces into's content and state with the next block. Returns 0, with into empty, when the length
    // comes short or is 2^31 or more, or a receive fails. Throws std::bad_alloc for a length that memory
    // cannot hold. Deliberate spelling.
    //
    // Deliberate: a peer's orderly close does not end a block either.
    // Kept by BaseComEnd.KeepsWaitingForABlockAfterAnOrderlyClose. Depends on it: nothing; programs watch for
    // it.
    int recieve_data(std::stringstream& into);

    // Closes data_socket, then listen_socket.
    //
    // Deliberate: the fields keep the numbers of what was closed.
    // Kept by BaseComEnd.KeepsStaleDescriptorsAfterDisconnect. Depends on it: the destructor closes them
    // again.
    void disconnect();

    // Closes one descriptor; returns what the system's close returns.
    //
    // Deliberate: any descriptor, and the fields stay as they are.
    // Kept by BaseComEnd.KeepsClosingAnyDescriptor. Depends on it: the link, which closes its own after an answer.
    int close_socket(int descriptor);

    // Wall-clock time in seconds, to the microsecond.
    double get_now_time() const;

protected:
    int data_socket = 0;   // all sending and receiving: the connected socket, or the accepted peer
    int listen_socket = 0; // start_server's; a client never opens it
};
