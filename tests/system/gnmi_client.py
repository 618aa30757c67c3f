"""The gNMI system test's client: one step a run, what it saw printed as one
JSON line on standard output (a failure's traceback goes there too).

    gnmi_client.py STEP ADDRESS FOLDER CONTROL_PORT

FOLDER holds ca.pem and the client and rogue certificates; the user is
"telemetry" with password "secret"; CONTROL_PORT is the simulator's.
"""
import json
import re
import socket
import sys
import time

import grpc

import gnmi_pb2
import gnmi_pb2_grpc

IN_OCTETS = "/interfaces/interface[name=%s]/state/counters/in-octets"
LINK = "/interfaces/interface[name=1/1]/state/oper-status"
sys.stderr = sys.stdout  # gRPC's own log lines still go to descriptor 2
step, address, folder, control_port = sys.argv[1:5]


def read(name):
    with open(f"{folder}/{name}", "rb") as file:
        return file.read()


def stub(client="client"):
    # A channel of its own (no connection shared with another channel), with
    # the certificate `client` (client, rogue) or none ("").
    key, chain = (read(client + ".key"), read(client + ".pem")) if client else (None, None)
    credentials = grpc.ssl_channel_credentials(read("ca.pem"), key, chain)
    options = [("grpc.use_local_subchannel_pool", 1), ("grpc.max_receive_message_length", 64 << 20)]
    return gnmi_pb2_grpc.gNMIStub(grpc.secure_channel(address, credentials, options))


def path(text):
    # "/a/b[k=v]/c" element by element: a '/' inside brackets is the key's.
    elements = re.findall(r"([^/\[]+)((?:\[[^\]]*\])*)", text)
    return gnmi_pb2.Path(elem=[gnmi_pb2.PathElem(name=name, key=dict(re.findall(r"\[([^=]+)=([^\]]*)\]", keys)))
                               for name, keys in elements])


def metadata(password="secret"):
    return (("username", "telemetry"), ("password", password))


# The Get's status and its (interface name, value) pairs.
def get(client, text, password="secret"):
    try:
        answer = client.Get(gnmi_pb2.GetRequest(path=[path(text)], encoding=gnmi_pb2.PROTO),
                            metadata=metadata(password), timeout=20)
    except grpc.RpcError as error:
        return error.code().name, []
    # One notification per interface, the interface's list entry its prefix.
    notifications = answer.notification
    return "OK", [(n.prefix.elem[1].key["name"], u.val.uint_val) for n in notifications for u in n.update]


# A STREAM of (path, mode, sample interval in ns) subscriptions.
def subscribe(client, encoding, *wanted):
    subscriptions = [gnmi_pb2.Subscription(path=path(text), mode=mode, sample_interval=interval)
                     for text, mode, interval in wanted]
    request = gnmi_pb2.SubscribeRequest(
        subscribe=gnmi_pb2.SubscriptionList(subscription=subscriptions, encoding=encoding))
    return client.Subscribe(iter([request]), metadata=metadata(), timeout=60)


# The link and the collections on change while the port goes down, then up:
# at the sync (collections, links), each wait's outcome, then every link
# update with whether a collection has its timestamp.
def on_change():
    stream = subscribe(stub(), gnmi_pb2.PROTO, (LINK, gnmi_pb2.ON_CHANGE, 0),
                       ("/orvovia-collector/state/collections", gnmi_pb2.ON_CHANGE, 0))
    links, collections, synced = [], set(), False

    def read_until(done):  # the stream's end or 100 responses at most
        nonlocal synced
        for _ in range(100):
            response = None if done() else next(stream, None)
            if response is None:
                break
            synced = synced or response.sync_response
            for update in response.update.update:
                if update.path.elem[-1].name == "collections":
                    collections.add(response.update.timestamp)
                if update.path.elem[-1].name == "oper-status":
                    links.append((update.val.string_val, response.update.timestamp))
        return done()

    def then_collections(count):
        until = len(collections) + count
        return read_until(lambda: len(collections) >= until)

    report = [read_until(lambda: synced), len(collections), [state for state, _ in links]]
    for change in ("down", "up"):
        with socket.create_connection(("127.0.0.1", int(control_port)), timeout=5) as control:
            control.sendall(f"port 1/1 {change}\n".encode())
            report.append(control.makefile().readline().strip())
        wanted = len(links) + 1
        report += [read_until(lambda: len(links) >= wanted), then_collections(3)]
    stream.cancel()
    return report + [[state, stamp in collections] for state, stamp in links]


# A SAMPLE at 500 ms of one leaf for 5 s: the sync, then the samples' count,
# distinct timestamps, and whether values never fell and repeated within a
# timestamp.
def sample():
    stream = subscribe(stub(), gnmi_pb2.PROTO, (IN_OCTETS % "1/1", gnmi_pb2.SAMPLE, 500_000_000))
    synced = any(next(stream).sync_response for _ in range(3))
    samples, start = [], time.monotonic()
    while time.monotonic() - start < 5 and len(samples) < 100:
        response = next(stream)
        samples.append((response.update.timestamp, response.update.update[0].val.uint_val))
    stream.cancel()
    ordered = all(b[1] >= a[1] and (a[0] != b[0] or a[1] == b[1]) for a, b in zip(samples, samples[1:]))
    return {"synced": synced, "samples": len(samples), "stamps": len({stamp for stamp, _ in samples}),
            "ordered": ordered, "values": samples}


# A stream of the whole tree every 100 ms, left unread for 16 s while another
# channel's Get goes on each second: the Gets' interface counts, then the
# status the drained stream ends with.
def stall():
    stalled = subscribe(stub(), gnmi_pb2.JSON_IETF, ("/", gnmi_pb2.SAMPLE, 100_000_000))
    client, counts, drained, status = stub(), [], 0, "OK"
    for _ in range(16):
        time.sleep(1)
        counts.append(len(get(client, IN_OCTETS % "*")[1]))
    try:
        for _ in zip(range(1_000_000), stalled):
            drained += 1
    except grpc.RpcError as error:
        status = error.code().name
    return {"interfaces": counts, "status": status, "drained": drained}


def capabilities():
    answer = stub().Capabilities(gnmi_pb2.CapabilityRequest(), metadata=metadata(), timeout=20)
    return [answer.gNMI_version, [gnmi_pb2.Encoding.Name(e) for e in answer.supported_encodings],
            [f"{m.name} {m.version}" for m in answer.supported_models]]


STEPS = {"get": lambda: dict(zip(("status", "octets"), get(stub(), IN_OCTETS % "*"))),
         "capabilities": capabilities,
         "refused": lambda: [get(stub(client), LINK, password)[0]
                             for client, password in (("client", "wrong"), ("", "secret"), ("rogue", "secret"))],
         "on-change": on_change, "sample": sample, "stall": stall}
print(json.dumps(STEPS[step]()))
