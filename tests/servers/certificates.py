"""Certificates for tests: an authority of its own, and what it vouches for."""

import os
import subprocess


class Authority:
    """`file` is what a client must trust. The variable SSL_CERT_FILE tells it."""

    def __init__(self, folder):
        self.folder = folder
        self.key, self.file = self.path("authority.key"), self.path("authority.pem")
        self.openssl("req", "-x509", *self.fresh_key(self.key), "-out", self.file, "-subj", "/CN=authority",
                     "-days", "2")

    def path(self, name):
        return os.path.join(self.folder, name)

    @staticmethod
    def openssl(*words):
        subprocess.run(["openssl", *words], check=True, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                       stderr=subprocess.PIPE)

    @staticmethod
    def fresh_key(path):
        return "-newkey", "rsa:2048", "-nodes", "-keyout", path

    def certificate(self, address):
        """A file with key and certificate of a server at that address."""
        both = self.path(f"{address}.pem")
        if os.path.exists(both):
            return both
        key, request, names = self.path(f"{address}.key"), self.path(f"{address}.csr"), self.path(f"{address}.names")
        with open(names, "w") as file:
            file.write(f"subjectAltName=IP:{address}\n")
        self.openssl("req", "-new", *self.fresh_key(key), "-out", request, "-subj", f"/CN={address}")
        self.openssl("x509", "-req", "-in", request, "-CA", self.file, "-CAkey", self.key, "-CAcreateserial",
                     "-days", "2", "-extfile", names, "-out", f"{key}.pem")
        with open(both, "w") as file:
            for part in (key, f"{key}.pem"):
                with open(part) as source:
                    file.write(source.read())
        os.chmod(both, 0o600)
        return both
