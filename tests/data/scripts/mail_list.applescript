on sanitizeText(valueText)
  set oldDelimiters to AppleScript's text item delimiters
  set AppleScript's text item delimiters to (ASCII character 31)
  set valueParts to text items of valueText
  set AppleScript's text item delimiters to " "
  set valueText to valueParts as text
  set AppleScript's text item delimiters to linefeed
  set valueParts to text items of valueText
  set AppleScript's text item delimiters to " "
  set valueText to valueParts as text
  set AppleScript's text item delimiters to return
  set valueParts to text items of valueText
  set AppleScript's text item delimiters to " "
  set valueText to valueParts as text
  set AppleScript's text item delimiters to oldDelimiters
  return valueText
end sanitizeText

on limitedText(valueText, maxCharacters)
  set cleanedText to my sanitizeText(valueText)
  if (length of cleanedText) > maxCharacters then
    return text 1 thru maxCharacters of cleanedText
  end if
  return cleanedText
end limitedText

set targetView to "unread"
set limitValue to 10
set fieldSeparator to ASCII character 31
set collectedRows to {}

with timeout of 12 seconds
tell application "Mail"
  set candidateMessages to messages of inbox
  repeat with candidateMessage in candidateMessages
    if (count of collectedRows) is greater than or equal to limitValue then exit repeat

    set messageIsRead to false
    set messageIsFlagged to false
    try
      set messageIsRead to read status of candidateMessage
    end try
    try
      set messageIsFlagged to flagged status of candidateMessage
    end try

    set shouldInclude to true
    if targetView is "unread" and messageIsRead then set shouldInclude to false
    if targetView is "flagged" and not messageIsFlagged then set shouldInclude to false

    if shouldInclude then
      set sourceIdValue to ""
      set messageIdValue to ""
      set mailboxValue to ""
      set accountValue to ""
      set senderValue to ""
      set subjectValue to ""
      set receivedAtValue to ""
      set previewValue to ""

      try
        set sourceIdValue to id of candidateMessage as text
      end try
      try
        set messageIdValue to message id of candidateMessage as text
      end try
      try
        set mailboxValue to name of mailbox of candidateMessage as text
      end try
      try
        set accountValue to name of account of mailbox of candidateMessage as text
      end try
      try
        set senderValue to sender of candidateMessage as text
      end try
      try
        set subjectValue to subject of candidateMessage as text
      end try
      try
        set receivedAtValue to date received of candidateMessage as text
      end try
      try
        set previewValue to my limitedText(content of candidateMessage as text, 600)
      end try

      set rowValue to my sanitizeText(sourceIdValue) & fieldSeparator & my sanitizeText(messageIdValue) & fieldSeparator & my sanitizeText(mailboxValue) & fieldSeparator & my sanitizeText(accountValue) & fieldSeparator & my sanitizeText(senderValue) & fieldSeparator & my sanitizeText(subjectValue) & fieldSeparator & my sanitizeText(receivedAtValue) & fieldSeparator & (messageIsRead as text) & fieldSeparator & (messageIsFlagged as text) & fieldSeparator & previewValue
      set end of collectedRows to rowValue
    end if
  end repeat
end tell
end timeout

return collectedRows