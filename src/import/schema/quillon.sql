-- Quillon.mdb: the settings. Every table but Settings_RepReceiver holds exactly one row.

CREATE TABLE Settings_General (
  DebugMode   BOOLEAN,              -- the debug files of the folder Debug are written
  DatumFormat TEXT COLLATE NOCASE,  -- dates on pages: YYYY-MM-DD, MM/DD/YYYY or DD/MM/YYYY
  SnmpcDir    TEXT COLLATE NOCASE   -- directory of the management product, with its Morvane.ini
);

CREATE TABLE Settings_WebServer (
  IpAddr  TEXT COLLATE NOCASE,  -- listening address; 0.0.0.0 takes the address of Morvane.ini
  TcpPort INTEGER,
  Enabled BOOLEAN,              -- the listener opens with the service
  Status  TEXT COLLATE NOCASE,  -- last state of the listener, written at start and stop
  CharSet TEXT COLLATE NOCASE   -- character set of the pages
);

CREATE TABLE Settings_SnmpAgent (
  Enabled       BOOLEAN,              -- the agent opens with the service
  SendAppEvents BOOLEAN,              -- application events go out as traps
  TrapComm      TEXT COLLATE NOCASE,  -- trap community
  Status        TEXT COLLATE NOCASE   -- why the last opening of the agent failed
);

-- One row a receiver of report mails, at most 100, served in stored order.
CREATE TABLE Settings_RepReceiver (
  Name           TEXT COLLATE NOCASE,  -- display name; a row without one is left out
  Recipient      TEXT COLLATE NOCASE,  -- mail address
  TimeSchedule   INTEGER,              -- 1 daily, 2 weekly, 3 on the first day of the month
  WeekDay        TEXT COLLATE NOCASE,  -- for the weekly mail: Monday to Sunday
  Top10Rep1      TEXT COLLATE NOCASE,  -- a report choice such as Access InVolume, or None
  Top10Rep2      TEXT COLLATE NOCASE,
  Top10Rep3      TEXT COLLATE NOCASE,
  Top10Rep4      TEXT COLLATE NOCASE,
  Top10Rep5      TEXT COLLATE NOCASE,
  PortRep        BOOLEAN,              -- a report of one port is wanted
  PortRepRecNo   INTEGER,              -- that port: device
  PortRepIfIndex INTEGER,              -- that port: interface index
  PortRepDetails BOOLEAN,              -- the port's table stands above its charts
  AttachReport   BOOLEAN,              -- the pages are attached
  IncludeUrl     BOOLEAN               -- the body carries the links to the pages
);

CREATE TABLE Settings_SmtpServer (
  MailServer   TEXT COLLATE NOCASE,
  MailPort     INTEGER,
  FromAddr     TEXT COLLATE NOCASE,
  Subject      TEXT COLLATE NOCASE,
  Priority     TEXT COLLATE NOCASE,
  CharSet      TEXT COLLATE NOCASE,  -- character set of the mail
  TimeOut      INTEGER,              -- seconds
  Retries      INTEGER,              -- attempts after the first one
  UseAuth      BOOLEAN,
  AuthMode     TEXT COLLATE NOCASE,  -- AUTH LOGIN or another mode
  Account      TEXT COLLATE NOCASE,
  Pass         TEXT COLLATE NOCASE,  -- held plain: the reason for the mode 0600 of the file
  Encoding     INTEGER,              -- code of the attachments' encoding
  BodyEncoding INTEGER,              -- code of the body's encoding
  BodyFormat   INTEGER               -- code of the body's format
);
