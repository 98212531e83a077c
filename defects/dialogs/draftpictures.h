// The pictures of a record in the draft of its window.
#pragma once

class CFormDraft;
class CRecordPictures;
struct FormDraft;
struct _REC_DATA;

void KeepPictures(CFormDraft& draft, const _REC_DATA& record, const CRecordPictures& pictures);
// Before the window opens: the record gets the pictures that it had there, as far as their files are still
// there; those that the window made are its to take back.
void ResumePictures(const FormDraft& draft, _REC_DATA& record, CRecordPictures& pictures);
