#include <grpcpp/grpcpp.h>
#include <grpcpp/security/server_credentials.h>
#include <grpcpp/support/message_allocator.h>

#include <malloc.h>

#include <atomic>
#include <condition_variable>
#include <list>
#include <mutex>
#include <thread>

#include "Arq/Gnmi/Encode.h"
#include "Arq/Gnmi/GnmiServer.h"
#include "Arq/Gnmi/Subscription.h"
#include "Arq/Gnmi/Users.h"
#include "Arq/Listener/Endpoint.h"
#include "Arq/Listener/Tls.h"
#include "gnmi.grpc.pb.h"

namespace Arq::Gnmi {
namespace {

using Request = grpc::ByteBuffer;
using Response = grpc::ByteBuffer;

// The value of a request's metadata entry, or empty.
std::string Metadata(const grpc::CallbackServerContext* context, const char* key) {
  const auto& metadata = context->client_metadata();
  const auto found = metadata.find(key);
  return found == metadata.end() ? std::string()
                                 : std::string(found->second.data(), found->second.size());
}

// Answers are written in their wire form (Encode.h) and leave as one slice,
// handed over without a copy.
grpc::ByteBuffer Buffer(std::string bytes) {
  auto* owned = new std::string(std::move(bytes));
  grpc::Slice slice(
      owned->data(), owned->size(), [](void* p) { delete static_cast<std::string*>(p); }, owned);
  return {&slice, 1};
}

// The glibc mmap threshold while the server runs, fixed as the Prometheus
// endpoint fixes it: a Get answer (megabytes for every interface) is mapped
// and unmapped, where the sliding threshold would rise to its size and serve
// later ones from a heap that keeps them resident.
constexpr std::size_t kMmapThreshold = std::size_t{256} * 1024;

// A Subscribe RPC answered with one status and nothing else.
class Refused final : public grpc::ServerBidiReactor<Request, Response> {
 public:
  explicit Refused(const grpc::Status& status) { Finish(status); }
  void OnDone() override { delete this; }
};

}  // namespace

class Stream;

// A stream as the publishing thread sees it: valid until the RPC is done.
struct StreamLink {
  std::mutex mutex;
  Stream* stream = nullptr;
};

// Get and Subscribe are served raw: their answers are written in wire form.
using Service = gnmi::gNMI::WithCallbackMethod_Capabilities<
    gnmi::gNMI::WithRawCallbackMethod_Get<gnmi::gNMI::WithCallbackMethod_Set<
        gnmi::gNMI::WithRawCallbackMethod_Subscribe<gnmi::gNMI::Service>>>>;

struct GnmiServer::Impl final : public Service {
  Impl(Settings settings, Model::SwitchModelStore& store)
      : settings(std::move(settings)), store(store) {}
  ~Impl() override;

  grpc::ServerUnaryReactor* Capabilities(grpc::CallbackServerContext* context,
                                         const gnmi::CapabilityRequest* request,
                                         gnmi::CapabilityResponse* response) override;
  grpc::ServerUnaryReactor* Get(grpc::CallbackServerContext* context, const grpc::ByteBuffer* raw,
                                grpc::ByteBuffer* response) override;
  grpc::ServerUnaryReactor* Set(grpc::CallbackServerContext* context,
                                const gnmi::SetRequest* request,
                                gnmi::SetResponse* response) override;
  grpc::ServerBidiReactor<Request, Response>* Subscribe(
      grpc::CallbackServerContext* context) override;

  grpc::Status Authorize(const grpc::CallbackServerContext* context) const;
  std::shared_ptr<const Snapshot> Current();
  void Register(const std::shared_ptr<StreamLink>& link);
  void Publisher();

  Settings settings;
  Model::SwitchModelStore& store;
  std::unique_ptr<Listener::BasicAuthUsers> users;
  std::unique_ptr<grpc::Server> server;
  int port = 0;
  std::atomic<std::size_t> subscriptions{0};

  std::mutex snapshotMutex;
  std::shared_ptr<const Snapshot> snapshot;

  std::mutex hubMutex;
  std::condition_variable wake;
  bool published = false;
  bool stopping = false;
  std::list<std::weak_ptr<StreamLink>> links;
  std::thread publisher;
  Model::SwitchModelStore::Subscription storeSubscription;
};

// One Subscribe RPC: its subscription, its bounded queue, and the one write
// in flight. Writes start from any thread; the RPC ends (Finish) only once no
// write is in flight, so that nothing writes after it.
class Stream final : public grpc::ServerBidiReactor<Request, Response> {
 public:
  Stream(GnmiServer::Impl& server, grpc::CallbackServerContext* context)
      : server_(server),
        context_(context),
        queue_(server.settings.maxQueuedBytes),
        link_(std::make_shared<StreamLink>()) {
    link_->stream = this;
    StartRead(&request_);
  }

  void OnReadDone(bool ok) override {
    if (!ok) {
      // The client closed its side: a POLL subscription is over; a STREAM
      // goes on until the client cancels.
      if (!started_ || core_.mode() != gnmi::SubscriptionList::STREAM) EndWith(grpc::Status::OK);
      return;
    }
    gnmi::SubscribeRequest request;
    if (!grpc::SerializationTraits<gnmi::SubscribeRequest>::Deserialize(&request_, &request).ok()) {
      EndWith({grpc::StatusCode::INVALID_ARGUMENT, "malformed SubscribeRequest"});
      return;
    }
    if (!started_) {
      if (!request.has_subscribe()) {
        EndWith({grpc::StatusCode::INVALID_ARGUMENT, "the first request must subscribe"});
        return;
      }
      StartSubscription(request.subscribe());
    } else if (request.has_poll() && core_.mode() == gnmi::SubscriptionList::POLL) {
      Answer([&](const Sink& sink) { return core_.Initial(server_.Current(), sink); });
    } else {
      EndWith({grpc::StatusCode::INVALID_ARGUMENT, "only Poll may follow a POLL subscription"});
      return;
    }
    StartRead(&request_);
  }

  void OnWriteDone(bool ok) override {
    {
      std::lock_guard<std::mutex> lock(mutex_);
      writing_ = false;
      if (!ok) Ending(grpc::Status::CANCELLED);
    }
    Pump();
  }

  void OnCancel() override { EndWith(grpc::Status::CANCELLED); }

  void OnDone() override {
    {
      std::lock_guard<std::mutex> lock(link_->mutex);
      link_->stream = nullptr;
    }
    --server_.subscriptions;
    delete this;
  }

  // Called by the publishing thread (its link held).
  void OnModel(const std::shared_ptr<const Snapshot>& before,
               const std::shared_ptr<const Snapshot>& after, const Changes& changes) {
    Answer([&](const Sink& sink) {
      // Before the first answer, which is taken from the newest model.
      if (!initialized_ || after->generation <= base_) return true;
      base_ = after->generation;
      return core_.OnChanges(*before, *after, changes, sink);
    });
  }
  SteadyClock::time_point Tick(const std::shared_ptr<const Snapshot>& snapshot,
                               SteadyClock::time_point now) {
    Answer([&](const Sink& sink) { return !initialized_ || core_.Tick(snapshot, now, sink); });
    std::lock_guard<std::mutex> lock(coreMutex_);
    return core_.NextDue();
  }
  // Cancels a stream whose queue overflowed and whose client still does not
  // read what is in flight.
  void CheckStalled(SteadyClock::time_point now) {
    std::lock_guard<std::mutex> lock(mutex_);
    if (overflowed_ && writing_ &&
        now - overflowAt_ > std::chrono::milliseconds(server_.settings.overflowGraceMs)) {
      context_->TryCancel();
    }
  }

 private:
  using Sink = SubscriptionCore::Sink;

  void StartSubscription(const gnmi::SubscriptionList& list) {
    grpc::Status status;
    {
      std::lock_guard<std::mutex> lock(coreMutex_);
      status = core_.Start(list, SteadyClock::now());
    }
    if (!status.ok()) {
      EndWith(status);
      return;
    }
    started_ = true;
    // A stream is registered before its first snapshot is taken, and that
    // snapshot is taken under the core's lock: a model published after it
    // reaches the stream through OnModel, and one published before is in it.
    // (Registered after, a model published in between reached neither.)
    if (core_.mode() == gnmi::SubscriptionList::STREAM) server_.Register(link_);
    Answer([&](const Sink& sink) {
      const auto snapshot = server_.Current();
      base_ = snapshot->generation;
      initialized_ = true;
      return core_.Initial(snapshot, sink);
    });
    if (core_.mode() == gnmi::SubscriptionList::ONCE) EndWith(grpc::Status::OK);
  }

  // Runs `produce` with a sink into the queue, then writes.
  template <typename Produce>
  void Answer(Produce produce) {
    {
      std::lock_guard<std::mutex> core(coreMutex_);
      produce([this](std::string response) {
        std::lock_guard<std::mutex> lock(mutex_);
        if (ending_) return false;
        if (!queue_.Push(std::move(response))) {
          overflowed_ = true;
          overflowAt_ = SteadyClock::now();
          Ending({grpc::StatusCode::RESOURCE_EXHAUSTED,
                  "the client does not read its updates fast enough"});
          return false;
        }
        return true;
      });
    }
    Pump();
  }

  // With mutex_ held: the RPC is to end with `status` once the write in
  // flight is done; what waits in the queue is dropped unless it ends well.
  void Ending(const grpc::Status& status) {
    if (ending_) return;
    ending_ = true;
    status_ = status;
    if (!status.ok()) queue_.Clear();
  }

  void EndWith(const grpc::Status& status) {
    {
      std::lock_guard<std::mutex> lock(mutex_);
      Ending(status);
    }
    Pump();
  }

  // Starts the next write, or ends the RPC when nothing is left to write.
  void Pump() {
    std::unique_lock<std::mutex> lock(mutex_);
    if (writing_ || finished_) return;
    if (!queue_.Empty()) {
      inFlight_ = Buffer(queue_.Pop());
      writing_ = true;
      lock.unlock();
      StartWrite(&inFlight_);
      return;
    }
    if (!ending_) return;
    finished_ = true;
    const grpc::Status status = status_;
    lock.unlock();
    Finish(status);
  }

  GnmiServer::Impl& server_;
  grpc::CallbackServerContext* context_;
  Request request_;
  bool started_ = false;  // touched by reactions only, which never overlap

  std::mutex coreMutex_;
  SubscriptionCore core_;
  std::uint64_t base_ = 0;    // the generation the stream is up to
  bool initialized_ = false;  // the first answer is queued

  std::mutex mutex_;
  BoundedQueue queue_;
  Response inFlight_;
  bool writing_ = false;
  bool ending_ = false;
  bool finished_ = false;
  bool overflowed_ = false;
  SteadyClock::time_point overflowAt_{};
  grpc::Status status_;

  std::shared_ptr<StreamLink> link_;
};

GnmiServer::Impl::~Impl() {
  storeSubscription = {};
  {
    std::lock_guard<std::mutex> lock(hubMutex);
    stopping = true;
  }
  wake.notify_all();
  if (publisher.joinable()) publisher.join();
  // Ends every RPC (streams are cancelled) and waits for their reactors.
  if (server) server->Shutdown(std::chrono::system_clock::now() + std::chrono::seconds(1));
}

grpc::Status GnmiServer::Impl::Authorize(const grpc::CallbackServerContext* context) const {
  if (!users) return grpc::Status::OK;
  if (users->Check(Metadata(context, "username"), Metadata(context, "password"))) {
    return grpc::Status::OK;
  }
  return {grpc::StatusCode::UNAUTHENTICATED, "unknown user or wrong password"};
}

std::shared_ptr<const Snapshot> GnmiServer::Impl::Current() {
  auto model = store.Current();
  std::lock_guard<std::mutex> lock(snapshotMutex);
  if (!snapshot || snapshot->generation != model->generation) {
    snapshot = MakeSnapshot(std::move(model));
  }
  return snapshot;
}

grpc::ServerUnaryReactor* GnmiServer::Impl::Capabilities(grpc::CallbackServerContext* context,
                                                         const gnmi::CapabilityRequest*,
                                                         gnmi::CapabilityResponse* response) {
  auto* reactor = context->DefaultReactor();
  const grpc::Status status = Authorize(context);
  if (status.ok()) {
    for (const auto& model : Models()) {
      auto* data = response->add_supported_models();
      data->set_name(model.name);
      data->set_organization(model.organization);
      data->set_version(model.version);
    }
    response->add_supported_encodings(gnmi::JSON_IETF);
    response->add_supported_encodings(gnmi::PROTO);
    response->set_gnmi_version("0.10.0");
  }
  reactor->Finish(status);
  return reactor;
}

grpc::ServerUnaryReactor* GnmiServer::Impl::Get(grpc::CallbackServerContext* context,
                                                const grpc::ByteBuffer* raw,
                                                grpc::ByteBuffer* response) {
  auto* reactor = context->DefaultReactor();
  grpc::Status status = Authorize(context);
  gnmi::GetRequest parsed;
  const gnmi::GetRequest* request = &parsed;
  if (status.ok()) {
    grpc::ByteBuffer copy(*raw);  // Deserialize takes the buffer's slices
    if (!grpc::SerializationTraits<gnmi::GetRequest>::Deserialize(&copy, &parsed).ok()) {
      status = {grpc::StatusCode::INVALID_ARGUMENT, "malformed GetRequest"};
    }
  }
  if (status.ok() && !Served(request->encoding())) {
    status = {grpc::StatusCode::UNIMPLEMENTED, "encodings served: JSON_IETF, PROTO"};
  }
  KindFilter filter = KindFilter::All;
  switch (request->type()) {
    case gnmi::GetRequest::CONFIG:
      filter = KindFilter::Config;
      break;
    case gnmi::GetRequest::STATE:
    case gnmi::GetRequest::OPERATIONAL:
      filter = KindFilter::State;
      break;
    default:
      break;
  }
  Selection selection;
  if (status.ok()) {
    if (request->path_size() > 64) {
      status = {grpc::StatusCode::INVALID_ARGUMENT, "more than 64 paths in one request"};
    } else {
      std::vector<const gnmi::Path*> paths;
      for (const auto& path : request->path()) paths.push_back(&path);
      status = Select(request->prefix(), paths, selection);
    }
  }
  if (status.ok()) {
    *response = Buffer(GetAnswer(*Current(), selection, filter, request->encoding()));
  }
  reactor->Finish(status);
  return reactor;
}

grpc::ServerUnaryReactor* GnmiServer::Impl::Set(grpc::CallbackServerContext* context,
                                                const gnmi::SetRequest*, gnmi::SetResponse*) {
  auto* reactor = context->DefaultReactor();
  const grpc::Status status = Authorize(context);
  reactor->Finish(status.ok() ? grpc::Status(grpc::StatusCode::UNIMPLEMENTED,
                                             "the switch is read only through gNMI")
                              : status);
  return reactor;
}

grpc::ServerBidiReactor<Request, Response>* GnmiServer::Impl::Subscribe(
    grpc::CallbackServerContext* context) {
  const grpc::Status status = Authorize(context);
  if (!status.ok()) return new Refused(status);
  if (++subscriptions > settings.maxSubscriptions) {
    --subscriptions;
    return new Refused(
        {grpc::StatusCode::RESOURCE_EXHAUSTED,
         "too many subscriptions (" + std::to_string(settings.maxSubscriptions) + ")"});
  }
  return new Stream(*this, context);
}

void GnmiServer::Impl::Register(const std::shared_ptr<StreamLink>& link) {
  {
    std::lock_guard<std::mutex> lock(hubMutex);
    links.push_back(link);
  }
  wake.notify_all();
}

void GnmiServer::Impl::Publisher() {
  std::shared_ptr<const Snapshot> last = Current();
  auto due = SteadyClock::time_point::max();
  for (;;) {
    std::vector<std::shared_ptr<StreamLink>> alive;
    {
      std::unique_lock<std::mutex> lock(hubMutex);
      const auto next = std::min(due, SteadyClock::now() + std::chrono::seconds(1));
      wake.wait_until(lock, next, [&] { return stopping || published; });
      if (stopping) return;
      published = false;
      for (auto it = links.begin(); it != links.end();) {
        if (auto link = it->lock()) {
          alive.push_back(std::move(link));
          ++it;
        } else {
          it = links.erase(it);
        }
      }
    }
    const auto current = Current();
    const auto now = SteadyClock::now();
    std::optional<Changes> changes;
    // Every snapshot not yet diffed is, whatever woke the thread: a periodic
    // tick may find a model published before its observer call came.
    if (current != last && !alive.empty()) changes = Diff(*last, *current);
    due = SteadyClock::time_point::max();
    for (const auto& link : alive) {
      std::lock_guard<std::mutex> lock(link->mutex);
      if (link->stream == nullptr) continue;
      if (changes) link->stream->OnModel(last, current, *changes);
      due = std::min(due, link->stream->Tick(current, now));
      link->stream->CheckStalled(now);
    }
    last = current;
  }
}

GnmiServer::GnmiServer(std::unique_ptr<Impl> impl) : impl_(std::move(impl)) {}
GnmiServer::~GnmiServer() = default;
int GnmiServer::Port() const {
  return impl_->port;
}

std::unique_ptr<GnmiServer> GnmiServer::Create(const Settings& settings,
                                               Model::SwitchModelStore& store, std::string& error) {
  const auto endpoint = Listener::ParseEndpoint(settings.address, error);
  if (!endpoint) {
    error = "ORVOVIA_GNMI_ADDRESS " + error;
    return nullptr;
  }
  const bool tls = !settings.certFile.empty() || !settings.keyFile.empty();
  std::shared_ptr<grpc::ServerCredentials> credentials;
  if (tls) {
    if (settings.certFile.empty() || settings.keyFile.empty()) {
      error = "TLS needs both ORVOVIA_GNMI_TLS_CERT and ORVOVIA_GNMI_TLS_KEY";
      return nullptr;
    }
    // Read with a bound and checked (the key belongs to the certificate, the
    // authorities parse) once here, rather than failing at each handshake.
    Listener::TlsMaterial material;
    error = Listener::LoadTlsMaterial({settings.certFile, settings.keyFile, settings.clientCaFile},
                                      material);
    if (!error.empty()) return nullptr;
    grpc::SslServerCredentialsOptions options;
    options.pem_key_cert_pairs.push_back(
        {std::move(material.key), std::move(material.certificate)});
    if (!settings.clientCaFile.empty()) {
      options.pem_root_certs = std::move(material.clientAuthorities);
      options.client_certificate_request =
          GRPC_SSL_REQUEST_AND_REQUIRE_CLIENT_CERTIFICATE_AND_VERIFY;
    }
    credentials = grpc::SslServerCredentials(options);
  } else {
    if (!settings.clientCaFile.empty()) {
      error = "ORVOVIA_GNMI_TLS_CLIENT_CA needs TLS (ORVOVIA_GNMI_TLS_CERT and _KEY)";
      return nullptr;
    }
    error = Listener::PlaintextRefusal(*endpoint);
    if (!error.empty()) return nullptr;
    credentials = grpc::InsecureServerCredentials();
  }
  auto impl = std::make_unique<Impl>(settings, store);
  if (!settings.usersFile.empty()) {
    impl->users = LoadUsers(settings.usersFile, error);
    if (!impl->users) return nullptr;
  }
  grpc::ServerBuilder builder;
  const std::string address = endpoint->ToString();
  builder.AddListeningPort(address, credentials, &impl->port);
  mallopt(M_MMAP_THRESHOLD, static_cast<int>(kMmapThreshold));  // NOLINT(concurrency-mt-unsafe)
  builder.RegisterService(impl.get());
  builder.SetMaxReceiveMessageSize(settings.maxReceiveBytes);
  builder.AddChannelArgument(GRPC_ARG_MAX_CONCURRENT_STREAMS, settings.maxConcurrentStreams);
  // A connection that goes quiet is probed, and closed when it does not answer.
  builder.AddChannelArgument(GRPC_ARG_KEEPALIVE_TIME_MS, 60000);
  builder.AddChannelArgument(GRPC_ARG_KEEPALIVE_TIMEOUT_MS, 20000);
  grpc::ResourceQuota quota("gnmi");
  quota.SetMaxThreads(8);
  builder.SetResourceQuota(quota);
  impl->server = builder.BuildAndStart();
  if (!impl->server || impl->port == 0) {
    error = "cannot listen on " + address + " (address in use or not local)";
    return nullptr;
  }
  Impl* raw = impl.get();
  impl->storeSubscription =
      store.Subscribe([raw](const std::shared_ptr<const Model::SwitchModel>&,
                            const std::shared_ptr<const Model::SwitchModel>&) {
        {
          std::lock_guard<std::mutex> lock(raw->hubMutex);
          raw->published = true;
        }
        raw->wake.notify_all();
      });
  impl->publisher = std::thread([raw] { raw->Publisher(); });
  return std::unique_ptr<GnmiServer>(new GnmiServer(std::move(impl)));
}

}  // namespace Arq::Gnmi
