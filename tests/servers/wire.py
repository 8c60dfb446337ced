"""What travels to and from one address, seen from outside as anybody on the line sees it."""

import ctypes
import socket
import struct
import threading

ETH_P_IP = 0x0800
TCP = 6
FIN_SYN = 0x03
PACKET_STATISTICS = 6
SOL_PACKET = 263
SO_RCVBUFFORCE = 33
SO_ATTACH_FILTER = 26
SO_TIMESTAMPNS = 35
CONTROL_PORT = 21
BUFFER = 32 << 20
LOAD, JUMP_IF_EQUAL, RETURN = 0x20, 0x15, 0x06
SOURCE, TARGET = 12, 16  # of an address in a packet


class Wire:
    """Listens on the loopback device while the `with` around it runs."""

    def __init__(self, address):
        self.address = socket.inet_aton(address)
        self.streams = {}  # bytes by source, source port, target, target port in the order of their first packets
        self.moments = []  # (seconds, bytes) of all that passed on control connections

    def __enter__(self):
        self.socket = socket.socket(socket.AF_PACKET, socket.SOCK_DGRAM, socket.htons(ETH_P_IP))
        self.socket.setsockopt(socket.SOL_SOCKET, SO_RCVBUFFORCE, BUFFER)
        self.socket.setsockopt(socket.SOL_SOCKET, SO_TIMESTAMPNS, 1)
        self.attach_filter()
        self.socket.bind(("lo", ETH_P_IP))
        self.isDone = threading.Event()
        self.socket.settimeout(0.05)
        self.thread = threading.Thread(target=self.listen)
        self.thread.start()
        return self

    def __exit__(self, *_):
        self.isDone.set()
        self.thread.join()
        _seen, lost = struct.unpack("II", self.socket.getsockopt(SOL_PACKET, PACKET_STATISTICS, 8))
        self.socket.close()
        if lost:
            raise RuntimeError(f"{lost} packets were missed")

    def attach_filter(self):
        """Other tests may have much to say meanwhile."""
        address, = struct.unpack(">I", self.address)
        steps = [(LOAD, 0, 0, SOURCE), (JUMP_IF_EQUAL, 2, 0, address), (LOAD, 0, 0, TARGET),
                 (JUMP_IF_EQUAL, 0, 1, address), (RETURN, 0, 0, 0xFFFFFFFF), (RETURN, 0, 0, 0)]
        code = ctypes.create_string_buffer(b"".join(struct.pack("HBBI", *step) for step in steps))
        self.socket.setsockopt(socket.SOL_SOCKET, SO_ATTACH_FILTER,
                               struct.pack("HL", len(steps), ctypes.addressof(code)))

    def listen(self):
        while True:
            try:
                packet, [(_, _, moment)], _, place = self.socket.recvmsg(1 << 16, 64)
            except TimeoutError:
                if self.isDone.is_set():
                    return
                continue
            if place[2] != socket.PACKET_OUTGOING:  # else each would be seen twice
                seconds, nanoseconds = struct.unpack("ll", moment)
                self.take(packet, seconds + nanoseconds / 1e9)

    def take(self, packet, seconds):
        source, target = packet[SOURCE:SOURCE + 4], packet[TARGET:TARGET + 4]
        if packet[9] != TCP:
            return
        length, = struct.unpack_from(">H", packet, 2)
        tcp = packet[(packet[0] & 15) * 4:length or len(packet)]
        source_port, target_port, number = struct.unpack_from(">HHI", tcp)
        key = source, source_port, target, target_port
        payload = tcp[(tcp[12] >> 4) * 4:]
        if payload and CONTROL_PORT in (source_port, target_port):
            self.moments.append((seconds, payload))
        if tcp[13] & FIN_SYN == 2 or key not in self.streams:
            self.streams[key] = [number + 1 if tcp[13] & 2 else number, bytearray()]
        start, stream = self.streams[key]
        # What has been sent again is put in its place.
        stream[number - start & 0xFFFFFFFF:] = payload if payload else stream[number - start & 0xFFFFFFFF:]

    @property
    def sessions(self):
        """The lines that clients sent to port 21, connection by connection."""
        return [bytes(stream).split(b"\r\n")[:-1] for (_, _, target, port), (_, stream) in self.streams.items()
                if target == self.address and port == CONTROL_PORT]

    def pauses_behind(self, reply):
        """Seconds from each such reply to what the client made of it."""
        return [after - before for (before, payload), (after, _) in zip(self.moments, self.moments[1:])
                if payload.startswith(reply)]

    @property
    def bytes(self):
        """All that passed in both directions."""
        return b"\n".join(bytes(stream) for _, stream in self.streams.values())
