with timeout of 8 seconds
  tell application "Mail"
    set _veskMailInboxCount to count of messages of inbox
  end tell
end timeout
return "ok"