// Speak.exe TEXT: speaks a text with the first English voice. Build it for x86, as speech.dll is 32-bit, and put it
// beside speech.dll or that folder on the PATH.

using System;
using System.Runtime.InteropServices;
using System.Text;

static class Speak
{
    const int VoiceLanguage = 4, EventWord = 2;

    [StructLayout(LayoutKind.Sequential)]
    struct SpeechEvent
    {
        public uint Size;
        public int Kind;
        public IntPtr Engine;
        public uint Utf8Offset, Utf8Length, Utf16Offset, Utf16Length;
        public int Error;
        public IntPtr Message;
    }

    [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
    delegate void Callback(IntPtr user, ref SpeechEvent speechEvent);

    [DllImport("speech.dll", CallingConvention = CallingConvention.Cdecl)]
    static extern int speech_engine_open(int voice, Callback callback, IntPtr user, out IntPtr engine);
    [DllImport("speech.dll", CallingConvention = CallingConvention.Cdecl)]
    static extern int speech_voice_text(int voice, int which, byte[] buffer, uint capacity, out uint length);
    [DllImport("speech.dll", CallingConvention = CallingConvention.Cdecl, CharSet = CharSet.Unicode)]
    static extern int speech_speak_w(IntPtr engine, string text, uint flags);
    [DllImport("speech.dll", CallingConvention = CallingConvention.Cdecl)]
    static extern int speech_wait(IntPtr engine, int timeoutMilliseconds);
    [DllImport("speech.dll", CallingConvention = CallingConvention.Cdecl)]
    static extern int speech_release();
    [DllImport("speech.dll", CallingConvention = CallingConvention.Cdecl)]
    static extern IntPtr speech_error_text(int error);

    static void Check(int result)
    {
        if (result != 0) throw new Exception(Marshal.PtrToStringAnsi(speech_error_text(result)));
    }

    static int FirstVoice(string language)
    {
        for (int voice = 0;; ++voice)
        {
            var code = new byte[16];
            uint length;
            Check(speech_voice_text(voice, VoiceLanguage, code, (uint)code.Length, out length));
            if (Encoding.UTF8.GetString(code, 0, (int)length).StartsWith(language)) return voice;
        }
    }

    [STAThread]
    static int Main(string[] arguments)
    {
        string text = arguments[0];
        Callback onEvent = (IntPtr user, ref SpeechEvent e) =>
        {
            if (e.Kind == EventWord) Console.WriteLine(text.Substring((int)e.Utf16Offset, (int)e.Utf16Length));
        };
        try
        {
            IntPtr engine;
            Check(speech_engine_open(FirstVoice("en"), onEvent, IntPtr.Zero, out engine));
            Check(speech_speak_w(engine, text, 0));
            Check(speech_wait(engine, -1));
        }
        catch (Exception failure)
        {
            Console.Error.WriteLine(failure.Message);
            return 1;
        }
        finally
        {
            speech_release();
            GC.KeepAlive(onEvent); // the library keeps only its address
        }
        return 0;
    }
}
