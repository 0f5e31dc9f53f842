on run argv
  set targetPhone to item 1 of argv
  set messageText to item 2 of argv
  tell application "Messages"
    set theBuddy to buddy targetPhone
    send messageText to theBuddy
  end tell
end run