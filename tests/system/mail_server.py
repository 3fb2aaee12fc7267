"""A mail server that takes every mail and puts it into a folder. It runs by itself, since its
library belongs to the system's own Python; mail_box.py starts it, and reads what has come."""
import argparse
import asyncio
import json
import logging
import os
import ssl
import warnings
from pathlib import Path

from aiosmtpd.smtp import SMTP, AuthResult


class Folder:
    """What the library calls at each step of a mail."""

    def __init__(self, path):
        self._path = path
        self._count = 0

    async def handle_DATA(self, server, session, envelope):
        self._count += 1
        self._store(f"{self._count:04}.eml", envelope.content)
        self._store(f"{self._count:04}.json", json.dumps({
            "sender": envelope.mail_from,
            "recipients": envelope.rcpt_tos,
            "account": (session.auth_data or b"").decode(),
            "is_encrypted": session.ssl is not None,
        }).encode())
        return "250 OK"

    def _store(self, name, data):
        """In one move, so that nobody reads a half."""
        part = self._path / f"{name}.part"
        part.write_bytes(data)
        part.rename(self._path / name)


def accounts(name, password):
    """Whom the server lets in: the one who knows the password, by AUTH LOGIN and no other way."""
    def ask(server, session, envelope, mechanism, given):
        is_right = (mechanism, given.login, given.password) == (
            "LOGIN", name.encode(), password.encode())
        return AuthResult(success=is_right, auth_data=given.login)
    return ask


def encryption(certificate, key):
    context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
    context.load_cert_chain(certificate, key)
    return context


def options_of(arguments):
    options = {"hostname": "mail.test"}
    if arguments.account:
        options |= {"authenticator": accounts(arguments.account, os.environ["MAIL_PASSWORD"]),
                    "auth_required": True, "auth_require_tls": False,
                    "auth_exclude_mechanism": ["PLAIN"]}
    if arguments.certificate:
        options["tls_context"] = encryption(arguments.certificate, arguments.key)
    return options


async def serve(arguments):
    folder, options = Folder(arguments.folder), options_of(arguments)
    server = await asyncio.get_running_loop().create_server(
        lambda: SMTP(folder, **options), "127.0.0.1", 0)
    print(server.sockets[0].getsockname()[1], flush=True)
    await server.serve_forever()


def main():
    # The library's remarks on passwords that travel in the open, and on clients that break off.
    warnings.simplefilter("ignore")
    logging.disable(logging.ERROR)
    parser = argparse.ArgumentParser()
    parser.add_argument("folder", type=Path)
    parser.add_argument("--account", help="nobody else may send; MAIL_PASSWORD is the password")
    parser.add_argument("--certificate", help="offers STARTTLS with it")
    parser.add_argument("--key", help="of the certificate")
    asyncio.run(serve(parser.parse_args()))


if __name__ == "__main__":
    main()
