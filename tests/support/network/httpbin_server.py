"""The httpbin service on a free port, which it prints."""
import logging

from httpbin import app
from werkzeug.serving import make_server

logging.getLogger("werkzeug").setLevel(logging.ERROR)
server = make_server("127.0.0.1", 0, app, threaded=True)
print(server.server_port, flush=True)
server.serve_forever()
