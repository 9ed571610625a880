#include "core/Base/FileFailure.h"

const wchar_t* AdviceFor(EFileFailure failure) {
    switch (failure) {
    case EFileFailure::Missing:
        return L"ファイルがありません。名前を変えたり、移したり、消したりしていないか確かめてください。";
    case EFileFailure::NoFolder:
        return L"フォルダがありません。別の場所を指定してください。";
    case EFileFailure::NotPlain:
        return L"ファイルではありません。別の名前を指定してください。";
    case EFileFailure::NoReadRight:
        return L"読み取る権限がありません。ファイルの権限を変えるか、持ち主に頼んでください。";
    case EFileFailure::NoWriteRight:
        return L"ファイルに書き込む権限がありません。ファイルの権限を変えるか、別の名前で保存してください。";
    case EFileFailure::FolderClosed:
        return L"フォルダに書き込む権限がありません。別の場所に保存してください。";
    case EFileFailure::ReadOnlyDisk:
        return L"ディスクが読み取り専用です。別の場所に保存してください。";
    case EFileFailure::DiskFull:
        return L"ディスクに空きがありません。不要なファイルを消すか、別のディスクに保存してください。";
    case EFileFailure::TooBigForDisk:
        return L"ファイルが大きすぎて、このディスクに置けません。別のディスクに保存してください。";
    case EFileFailure::NameTooLong:
        return L"名前が長すぎます。短い名前か、浅いフォルダを指定してください。";
    case EFileFailure::TooManyOpen:
        return L"開いているファイルが多すぎます。ほかのプログラムを終了してから、やり直してください。";
    case EFileFailure::DiskError:
        return L"ディスクを読み書きできません。接続と状態を確かめるか、別のディスクを使ってください。";
    case EFileFailure::NoSafetyCopy:
        return L"フォルダに書き込む権限がなく、書き換える間の控えも作れません。別の場所に保存してください。";
    case EFileFailure::HalfWritten:
        return L"書き込みが途中で止まりました。控えを残したので、次に起動したときに復元できます。"
               L"今すぐ別の場所にも保存してください。";
    case EFileFailure::NoMemory:
        return L"メモリが足りません。ほかの書類やプログラムを閉じてから、やり直してください。";
    case EFileFailure::DamagedDocument:
        return L"バックアップがあれば、そちらを開いてください。";
    case EFileFailure::UnknownEnding:
        return L"この拡張子の形式では保存できません。"
               L"vlm、bmp、png、jpg、gif、tif、psd、svg のどれかを付けてください。";
    case EFileFailure::UnknownPicture:
        return L"開ける形式ではありません。bmp、png、jpg、gif、tif のどれかに変換してください。";
    case EFileFailure::WriteOnlyPicture:
        return L"PSD と SVG は書き出し専用の形式なので、開けません。"
               L"作ったソフトで png などに書き出し、そのファイルを開いてください。";
    case EFileFailure::DamagedPicture:
        return L"内容が壊れているか、途中で切れています。バックアップを開くか、元の画像を取り直してください"
               L"。";
    case EFileFailure::PictureTooLarge:
        return L"画像が大きすぎます。縦も横も30000ピクセルまで、全体で5億ピクセルほどまでに縮めてください。";
    case EFileFailure::NoCodec:
        return L"この形式を扱う部品がありません。Qt の画像プラグインを入れるか、別の形式を使ってください。";
    case EFileFailure::Unknown:
        break;
    }
    return L"場所と名前を確かめて、やり直してください。";
}
