-- The settings of a new installation. Mail is off because nobody receives any.

INSERT INTO Settings_General (DebugMode, DatumFormat, SnmpcDir)
VALUES (FALSE, 'YYYY-MM-DD', :Directory);

INSERT INTO Settings_WebServer (IpAddr, TcpPort, Enabled, Status, CharSet)
VALUES ('0.0.0.0', 8080, TRUE, '', 'ISO-8859-1');

INSERT INTO Settings_SnmpAgent (Enabled, SendAppEvents, TrapComm, Status)
VALUES (TRUE, TRUE, 'public', '');

INSERT INTO Settings_SmtpServer
  (MailServer, MailPort, FromAddr, Subject, Priority, CharSet, TimeOut, Retries,
   UseAuth, AuthMode, Account, Pass, Encoding, BodyEncoding, BodyFormat)
VALUES
  ('127.0.0.1', 25, 'quillon@localhost', 'Quillon Network Report', 'Normal', 'ISO-8859-1', 30, 2,
   FALSE, 'AUTH LOGIN', '', '', 0, 0, 0);
